// Fills stores from the furthest to the nearest.

#include "symsrv/delivery.h"

#include <algorithm>
#include <new>
#include <utility>

#include "symsrv/cabinet.h"
#include "symsrv/pdb_identity.h"
#include "symsrv/verify.h"

namespace symsrv_1_0::internal {
namespace {

constexpr std::size_t kChunk = std::size_t{256} << 10;
constexpr int kTriesToMake = 3;

/// Tells a full disk from a damaged cabinet, and lets the caller end it.
class WatchedSink final : public IByteSink {
 public:
  WatchedSink(IByteSink& to, Progress& progress) : m_to(to), m_progress(progress) {}

  bool write(const void* bytes, std::size_t count) override {
    if (!m_progress.tick())
      return false;
    m_hasFailed = m_hasFailed || !m_to.write(bytes, count);
    return !m_hasFailed;
  }

  bool hasFailed() const { return m_hasFailed; }

 private:
  IByteSink& m_to;
  Progress& m_progress;
  bool m_hasFailed = false;
};

/// Returns false when the file cannot be read, or the other one is full.
bool append(IByteSource& from, std::uint64_t size, NewFile& to) {
  std::vector<char> buffer(kChunk);
  for (std::uint64_t at = 0; at < size;) {
    const std::size_t count =
        static_cast<std::size_t>(std::min<std::uint64_t>(buffer.size(), size - at));
    if (!from.read(at, buffer.data(), count) || !to.write(buffer.data(), count))
      return false;
    at += count;
  }
  return true;
}

bool isCompressedFile(IByteSource& source) {
  return recogniseContainer(source) == Container::kCabinet;
}

}  // namespace

Delivery::Delivery(const std::vector<DirectoryStore>& stores,
                   std::optional<DirectoryStore> spare,
                   const SoughtFile& sought,
                   const Settings& settings,
                   Progress& progress)
    : m_stores(stores),
      m_spare(std::move(spare)),
      m_sought(sought),
      m_settings(settings),
      m_progress(progress) {
  const auto isSpare = [this](const DirectoryStore& s) { return s.root() == m_spare->root(); };
  if (m_spare && std::any_of(m_stores.begin(), m_stores.end(), isSpare))
    m_spare.reset();
  for (const DirectoryStore& store : m_stores) addSlot(store);
}

Delivery::~Delivery() {
  m_raw.reset();
  m_slots.clear();
  const Place* const place = m_isPublished ? nullptr : m_sought.cachePlace();
  if (!place)
    return;
  try {
    for (const DirectoryStore& store : m_stores) store.removeEmpty(*place);
  } catch (const std::bad_alloc&) {
    // Empty folders may stay: they are in nobody's way.
  }
}

void Delivery::addSlot(const DirectoryStore& store) {
  const Place* place = m_sought.cachePlace();
  // Another process may remove the folder while it is still empty.
  for (int tries = 0; place && tries < kTriesToMake && store.reasonAgainst().empty(); ++tries) {
    std::shared_ptr<Folder> folder = store.make(*place);
    std::unique_ptr<NewFile> file = folder ? folder->create(place->file) : nullptr;
    if (file) {
      m_slots.push_back({std::move(folder), std::move(file)});
      return;
    }
  }
}

/// Returns false when no store is left, the spare one included.
bool Delivery::hasSlot() {
  if (m_slots.empty() && m_spare) {
    m_stores.push_back(*std::exchange(m_spare, std::nullopt));
    addSlot(m_stores.back());
  }
  return !m_slots.empty();
}

Delivery::Outcome Delivery::stop(Outcome outcome, std::string reason) {
  m_reason = std::move(reason);
  return outcome;
}

/// Returns false when a store did not take all, or did not give it back: what speaks against the
/// file then need not be its own fault.
bool Delivery::isJudged() const {
  const auto isBad = [](const Slot& slot) { return slot.file->isUnreadable(); };
  return !m_hasLostStore && !(m_raw && m_raw->isUnreadable()) &&
         std::none_of(m_slots.begin(), m_slots.end(), isBad);
}

/// In the furthest store, which keeps what is compressed.
bool Delivery::openRaw() {
  for (; hasSlot(); m_slots.pop_back()) {
    const std::shared_ptr<Folder>& folder = m_slots.back().folder;
    m_raw = folder->create(m_sought.cachePlace()->file);
    m_rawFolder = folder.get();
    if (m_raw)
      return true;
  }
  return false;
}

/// Goes on in another store with the first `size` bytes of what has come.
bool Delivery::moveRaw(std::uint64_t size) {
  const std::unique_ptr<NewFile> full = std::move(m_raw);
  do {
    m_raw.reset();
    m_slots.pop_back();
    if (!openRaw())
      return false;
  } while (!append(*full, size, *m_raw));
  return true;
}

bool Delivery::write(const void* bytes, std::size_t count) {
  if (!m_raw && !openRaw())
    return false;
  for (;;) {
    const std::uint64_t size = m_raw->size();
    if (m_raw->write(bytes, count))
      return true;
    if (!moveRaw(size))
      return false;
  }
}

DeliveryResult Delivery::deliver() {
  return deliver(*m_raw);
}

DeliveryResult Delivery::deliver(IByteSource& source) {
  const bool isCompressed = isCompressedFile(source);
  // A place that is not a symbol store's own has no name for what is compressed.
  if (isCompressed && m_slots.size() > 1 && !m_sought.cachePlace()->isKeyed)
    m_slots.erase(m_slots.begin() + 1, m_slots.end());
  while (hasSlot()) {
    std::size_t failed = 0;
    assignRaw(isCompressed);
    Outcome outcome = fill(source, isCompressed, failed);
    if (outcome == Outcome::kDone)
      outcome = publishNearest();
    if (outcome == Outcome::kDone)
      return {publishOthers(isCompressed), {}};
    if (outcome == Outcome::kWrong)
      return {{}, m_reason, isJudged()};
    m_hasLostStore = true;
    m_slots.erase(m_slots.begin() + static_cast<std::ptrdiff_t>(failed));
  }
  return {{}, m_reason.empty() ? "no store can be written" : m_reason, false};
}

/// What was downloaded lies in the furthest store already, when it is kept there as it is.
void Delivery::assignRaw(bool isCompressed) {
  Slot& furthest = m_slots.back();
  const bool isKept = !isCompressed || m_slots.size() > 1;
  furthest.usesRaw = m_raw && isKept && furthest.folder.get() == m_rawFolder;
}

Delivery::Outcome Delivery::fill(IByteSource& source, bool isCompressed, std::size_t& failed) {
  IByteSource* from = &source;
  for (std::size_t i = m_slots.size() - 1; i > 0; --i) {
    Slot& slot = m_slots[i];
    failed = i;
    if (!slot.usesRaw && slot.content != Content::kAsFound) {
      const Outcome outcome = copy(*from, *slot.file);
      if (outcome != Outcome::kDone)
        return outcome;
    }
    slot.content = Content::kAsFound;
    from = &fileOf(slot);
  }
  failed = 0;
  return fillNearest(*from, isCompressed);
}

Delivery::Outcome Delivery::fillNearest(IByteSource& from, bool isCompressed) {
  Slot& nearest = m_slots.front();
  const Content wanted = isCompressed ? Content::kExpanded : Content::kAsFound;
  if (!nearest.usesRaw && nearest.content != wanted) {
    nearest.content = Content::kNone;
    const Outcome outcome = isCompressed ? expand(from, *nearest.file) : copy(from, *nearest.file);
    if (outcome != Outcome::kDone)
      return outcome;
  }
  nearest.content = wanted;
  std::string reason = mismatch(fileOf(nearest), m_sought);
  return reason.empty() ? Outcome::kDone : stop(Outcome::kWrong, std::move(reason));
}

Delivery::Outcome Delivery::copy(IByteSource& from, NewFile& to) {
  std::vector<char> buffer(kChunk);
  if (!to.clear())
    return stop(Outcome::kCannotWrite, "cannot be written");
  m_progress.begin(from.size());
  for (std::uint64_t at = 0; at < from.size();) {
    const std::size_t count =
        static_cast<std::size_t>(std::min<std::uint64_t>(buffer.size(), from.size() - at));
    if (!from.read(at, buffer.data(), count))
      return stop(Outcome::kWrong, "cannot be read");
    if (!to.write(buffer.data(), count))
      return stop(Outcome::kCannotWrite, "cannot be written");
    at += count;
    m_progress.add(count);
    if (!m_progress.tick())
      return stop(Outcome::kWrong, "canceled");
  }
  return m_progress.complete() ? Outcome::kDone : stop(Outcome::kWrong, "canceled");
}

Delivery::Outcome Delivery::expand(IByteSource& from, NewFile& to) {
  if (!to.clear())
    return stop(Outcome::kCannotWrite, "cannot be written");
  WatchedSink sink(to, m_progress);
  std::string reason = expandCabinet(from, m_settings.limits.bytes, sink);
  if (sink.hasFailed())
    return stop(Outcome::kCannotWrite, "cannot be written");
  if (m_progress.isCanceled())
    return stop(Outcome::kWrong, "canceled");
  return reason.empty() ? Outcome::kDone : stop(Outcome::kWrong, std::move(reason));
}

/// Returns true when another process was quicker. A system may refuse to replace what is in use.
bool Delivery::hasRightFile(const Folder& folder, const std::string& name) const {
  const std::unique_ptr<FileSource> file = folder.read(name, Links::kRefuse);
  return file && mismatch(*file, m_sought).empty();
}

/// The nearest first: the others are of use only when it worked.
Delivery::Outcome Delivery::publishNearest() {
  const std::string& name = m_sought.cachePlace()->file;
  Slot& nearest = m_slots.front();
  if (!fileOf(nearest).publish(name) && !hasRightFile(*nearest.folder, name))
    return stop(Outcome::kCannotWrite, "cannot be written");
  m_isPublished = true;
  return Outcome::kDone;
}

/// Returns the path of the file in the nearest store.
std::string Delivery::publishOthers(bool isCompressed) {
  const std::string& name = m_sought.cachePlace()->file;
  for (std::size_t i = 1; i < m_slots.size(); ++i)
    static_cast<void>(fileOf(m_slots[i]).publish(isCompressed ? compressedName(name) : name));
  return m_slots.front().folder->pathOf(name);
}

}  // namespace symsrv_1_0::internal
