// One search along one chain.

#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "symsrv/downloader.h"

namespace symsrv_1_0::internal {

class ChainSearch final {
 public:
  ChainSearch(Downloader& shared, const SearchRequest& request, const Chain& chain);

  /// Returns the local path. Empty when there is none.
  std::string run();

  /// Returns true when a search that stays near ended before it was decided.
  bool isUndecided() const { return m_isUndecided; }

 private:
  struct Answers {
    bool isMissing = true;  // every answer said so
    bool isForGood = true;  // and said so clearly
  };

  std::string tryDirectory(std::size_t index);
  std::string lookIn(std::size_t index, const DirectoryStore& store, const Place& place);
  std::string tryFile(std::size_t index, IByteSource& file, const std::string& path);
  std::string trySpare(std::size_t index);
  std::string wasBrought(const std::vector<DirectoryStore>& stores);
  std::string tryPointer(std::size_t index, const DirectoryStore& store, const Folder& folder);
  std::unique_ptr<FileSource> openPointed(const std::string& text,
                                          const std::string& storeRoot,
                                          std::string& path);

  std::string tryServer(std::size_t index);
  std::string askFor(std::size_t index, const Place& place);
  std::string tryServerAlone(std::size_t index,
                             const Place& place,
                             const std::string& key,
                             const DirectoryStore* notes);
  std::string reasonNotToAsk(std::size_t index) const;
  bool mayAsk(std::size_t index,
              const Place& place,
              const std::string& key,
              const DirectoryStore* notes);
  std::string askServer(std::size_t index, const Place& place, bool hasTwoTiers, Answers& answers);
  std::optional<bool> askTiers(const Url& url);
  std::string download(std::size_t index,
                       const std::vector<std::string>& components,
                       Answers& answers);
  void judgeFailure(const Url& url, const FetchResult& result, Answers& answers);

  DirectoryStore directory(std::size_t index) const;
  /// Returns the stores that take a copy of what is found at `index`, the nearest first.
  std::vector<DirectoryStore> storesBefore(std::size_t index) const;
  std::optional<DirectoryStore> nearestStore(std::size_t index) const;
  std::optional<DirectoryStore> spareStore() const;
  void sweep(const std::vector<DirectoryStore>& stores) const;
  void say(const std::string& where, const std::string& what) const;
  /// Says it, and remembers it as the store's answer.
  void answer(StoreOutcome outcome,
              const std::string& where,
              const std::string& what,
              std::uint64_t bytes = 0);
  void tellWatcher(const StoreName& store) const;

  Downloader& m_shared;
  const Settings& m_settings;
  const SearchRequest& m_request;
  const Chain& m_chain;
  const SoughtFile& m_sought;
  Progress& m_progress;

  struct Answer {
    StoreOutcome outcome = StoreOutcome::kMissing;
    std::string place;
    std::string what;
    std::uint64_t bytes = 0;
  };
  Answer m_answer;  // of the store that is being asked, for the watcher
  bool m_hasAnswer = false;
  bool m_isUndecided = false;
};

}  // namespace symsrv_1_0::internal
