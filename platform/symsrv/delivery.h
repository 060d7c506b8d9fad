// Brings a file that was found into the stores on its way to the user.
//
// Stores in the middle get what was found, compressed or not; the nearest gets it expanded. All are
// filled before any is published, and nothing is published that is not the right file. A store
// that cannot be written is left out.

#pragma once

#include <memory>
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
  /// `stores`: the nearest first.
  Delivery(const std::vector<DirectoryStore>& stores,
           const SoughtFile& sought,
           const Settings& settings,
           Progress& progress);
  ~Delivery();

  Delivery(const Delivery&) = delete;
  Delivery& operator=(const Delivery&) = delete;

  /// Returns true when some store can take the file.
  bool hasPlace() const { return !m_slots.empty(); }

  /// Returns a file to download into, in the furthest of them. Null when it cannot be made.
  std::unique_ptr<NewFile> newRawFile();

  /// Brings in what was downloaded.
  DeliveryResult deliver(std::unique_ptr<NewFile> raw);
  /// Brings in a copy.
  DeliveryResult deliver(IByteSource& source);

 private:
  struct Slot {
    std::shared_ptr<Folder> folder;
    std::unique_ptr<NewFile> file;
    bool isFilled;
  };
  enum class Outcome { kDone, kWrong, kCannotWrite };

  void addSlot(const DirectoryStore& store, const Place& place);
  Outcome fill(IByteSource& source, bool isCompressed, std::size_t& failed);
  Outcome fillNearest(IByteSource& from, bool isCompressed);
  Outcome copy(IByteSource& from, NewFile& to);
  Outcome expand(IByteSource& from, NewFile& to);
  bool hasRightFile(const Folder& folder, const std::string& name) const;
  DeliveryResult publish(bool isCompressed);
  Outcome stop(Outcome outcome, std::string reason);

  const std::vector<DirectoryStore> m_stores;
  const SoughtFile& m_sought;
  const Settings& m_settings;
  Progress& m_progress;
  std::vector<Slot> m_slots;  // the nearest first
  std::string m_reason;
  bool m_isPublished = false;
};

}  // namespace symsrv_1_0::internal
