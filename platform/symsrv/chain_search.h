// One search along one chain.

#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "symsrv/downloader.h"

namespace symsrv_1_0::internal {

class ChainSearch final {
 public:
  /// `chains` are all that were registered: a pointer may lead into any of their directories.
  ChainSearch(Downloader& shared,
              const std::vector<Chain>& chains,
              const Chain& chain,
              const SoughtFile& sought,
              Progress& progress);

  /// Returns the local path. Empty when there is none.
  std::string run();

 private:
  struct Answers {
    bool isMissing = true;  // every answer said so
    bool isForGood = true;  // and said so clearly
  };

  std::string tryDirectory(std::size_t index, const Place& place);
  std::string tryFile(std::size_t index, IByteSource& file, const std::string& path);
  std::string tryPointer(std::size_t index, const DirectoryStore& store, const Folder& folder);
  std::unique_ptr<FileSource> openPointed(const std::string& text,
                                          const std::string& storeRoot,
                                          std::string& path);

  std::string tryServer(std::size_t index, const Place& place);
  std::string askServer(std::size_t index, const Place& place, bool hasTwoTiers, Answers& answers);
  std::optional<bool> askTiers(const Url& url);
  std::string download(std::size_t index,
                       const std::vector<std::string>& components,
                       Answers& answers);
  void judgeFailure(const Url& url, const FetchResult& result, Answers& answers);

  DirectoryStore directory(std::size_t index) const;
  /// Returns the stores that take a copy of what is found at `index`, the nearest first.
  std::vector<DirectoryStore> storesBefore(std::size_t index) const;
  std::string nearestStore() const;
  void say(const std::string& where, const std::string& what) const;
  /// Says it, and remembers it as the store's answer.
  void answer(StoreOutcome outcome,
              const std::string& where,
              const std::string& what,
              std::uint64_t bytes = 0);
  void tellWatcher(const StoreName& store) const;

  Downloader& m_shared;
  const Settings& m_settings;
  const std::vector<Chain>& m_chains;
  const Chain& m_chain;
  const SoughtFile& m_sought;
  Progress& m_progress;

  struct Answer {
    StoreOutcome outcome = StoreOutcome::kMissing;
    std::string place;
    std::string what;
    std::uint64_t bytes = 0;
  };
  Answer m_answer;  // of the store that is being asked
};

}  // namespace symsrv_1_0::internal
