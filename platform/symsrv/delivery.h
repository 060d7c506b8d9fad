// Brings a file that was found into the stores on its way to the user.
//
// Stores in the middle get what was found, compressed or not; the nearest gets it expanded. All are
// filled before any is published, and nothing is published that is not the right file. A store
// that cannot be written, or not to the end, is left out: the next one takes its part, and in the
// place of the last one the spare store.

#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "symsrv/directory_store.h"
#include "symsrv/fetch.h"
#include "symsrv/progress.h"
#include "symsrv/sought_file.h"

namespace symsrv_1_0::internal {

struct DeliveryResult {
  std::string path;          ///< In the nearest store. Empty when there is none.
  std::string reason;        ///< Then: what speaks against the file, or against every store.
  bool isFilesFault = true;  ///< Then: it is the file that is wrong.
};

class Delivery final {
 public:
  /// `stores`: the nearest first. `spare` takes the file when none of them can.
  Delivery(const std::vector<DirectoryStore>& stores,
           std::optional<DirectoryStore> spare,
           const SoughtFile& sought,
           const Settings& settings,
           Progress& progress);
  ~Delivery();

  Delivery(const Delivery&) = delete;
  Delivery& operator=(const Delivery&) = delete;

  /// Takes the next bytes of a download. Returns false when there is no room for them anywhere.
  bool write(const void* bytes, std::size_t count);
  /// Takes back what was written.
  bool clear() { return !m_raw || m_raw->clear(); }

  /// Brings in what was written.
  DeliveryResult deliver();
  /// Brings in a copy.
  DeliveryResult deliver(IByteSource& source);

 private:
  enum class Content { kNone, kAsFound, kExpanded };
  struct Slot {
    std::shared_ptr<Folder> folder;
    std::unique_ptr<NewFile> file;
    Content content = Content::kNone;
    bool usesRaw = false;  ///< What was downloaded into this store is its file.
  };
  enum class Outcome { kDone, kWrong, kCannotWrite };

  void addSlot(const DirectoryStore& store);
  bool hasSlot();
  bool openRaw();
  bool moveRaw(std::uint64_t size);
  NewFile& fileOf(Slot& slot) { return slot.usesRaw ? *m_raw : *slot.file; }
  void assignRaw(bool isCompressed);
  Outcome fill(IByteSource& source, bool isCompressed, std::size_t& failed);
  Outcome fillNearest(IByteSource& from, bool isCompressed);
  Outcome copy(IByteSource& from, NewFile& to);
  Outcome expand(IByteSource& from, NewFile& to);
  bool hasRightFile(const Folder& folder, const std::string& name) const;
  Outcome publishNearest();
  std::string publishOthers(bool isCompressed);
  Outcome stop(Outcome outcome, std::string reason);
  bool isJudged() const;

  std::vector<DirectoryStore> m_stores;
  std::optional<DirectoryStore> m_spare;
  const SoughtFile& m_sought;
  const Settings& m_settings;
  Progress& m_progress;
  std::vector<Slot> m_slots;  // the nearest first
  std::unique_ptr<NewFile> m_raw;
  const Folder* m_rawFolder = nullptr;
  std::string m_reason;
  bool m_isPublished = false;
  bool m_hasLostStore = false;  // one could not be written to the end
};

}  // namespace symsrv_1_0::internal
