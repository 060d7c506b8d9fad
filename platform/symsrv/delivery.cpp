// Fills stores from the furthest to the nearest.

#include "symsrv/delivery.h"

#include <algorithm>

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

bool isCompressedFile(IByteSource& source) {
  return recogniseContainer(source) == Container::kCabinet;
}

}  // namespace

Delivery::Delivery(const std::vector<DirectoryStore>& stores,
                   const SoughtFile& sought,
                   const Settings& settings,
                   Progress& progress)
    : m_stores(stores), m_sought(sought), m_settings(settings), m_progress(progress) {
  if (const Place* place = sought.cachePlace())
    for (const DirectoryStore& store : m_stores) addSlot(store, *place);
}

Delivery::~Delivery() {
  m_slots.clear();
  if (const Place* place = m_isPublished ? nullptr : m_sought.cachePlace())
    for (const DirectoryStore& store : m_stores) store.removeEmpty(*place);
}

void Delivery::addSlot(const DirectoryStore& store, const Place& place) {
  // Another process may remove the folder while it is still empty.
  for (int tries = 0; tries < kTriesToMake && store.reasonAgainst().empty(); ++tries) {
    std::shared_ptr<Folder> folder = store.make(place);
    std::unique_ptr<NewFile> file = folder ? folder->create(place.file) : nullptr;
    if (file) {
      m_slots.push_back({std::move(folder), std::move(file), false});
      return;
    }
  }
}

Delivery::Outcome Delivery::stop(Outcome outcome, std::string reason) {
  m_reason = std::move(reason);
  return outcome;
}

std::unique_ptr<NewFile> Delivery::newRawFile() {
  return m_slots.back().folder->create(m_sought.cachePlace()->file);
}

DeliveryResult Delivery::deliver(std::unique_ptr<NewFile> raw) {
  // What is compressed is kept by stores in the middle alone.
  const bool isKept = m_slots.size() > 1 && m_sought.cachePlace()->isKeyed;
  if (isCompressedFile(*raw) && !isKept)
    return deliver(*raw);
  m_slots.back().file = std::move(raw);
  m_slots.back().isFilled = true;
  return deliver(*m_slots.back().file);
}

DeliveryResult Delivery::deliver(IByteSource& source) {
  const bool isCompressed = isCompressedFile(source);
  // A place that is not a symbol store's own has no name for what is compressed.
  if (isCompressed && !m_sought.cachePlace()->isKeyed)
    m_slots.resize(1);
  while (!m_slots.empty()) {
    std::size_t failed = 0;
    switch (fill(source, isCompressed, failed)) {
      case Outcome::kDone:
        return publish(isCompressed);
      case Outcome::kWrong:
        return {{}, m_reason};
      case Outcome::kCannotWrite:
        // What lies in the file that failed may be the source itself.
        if (m_slots[failed].file.get() == static_cast<IByteSource*>(&source))
          return {{}, m_reason, false};
        m_slots.erase(m_slots.begin() + static_cast<std::ptrdiff_t>(failed));
    }
  }
  return {{}, m_reason.empty() ? "no store can be written" : m_reason, false};
}

Delivery::Outcome Delivery::fill(IByteSource& source, bool isCompressed, std::size_t& failed) {
  IByteSource* from = &source;
  for (std::size_t i = m_slots.size() - 1; i > 0; --i) {
    Slot& slot = m_slots[i];
    failed = i;
    const Outcome outcome = slot.isFilled ? Outcome::kDone : copy(*from, *slot.file);
    if (outcome != Outcome::kDone)
      return outcome;
    slot.isFilled = true;
    from = slot.file.get();
  }
  failed = 0;
  return fillNearest(*from, isCompressed);
}

Delivery::Outcome Delivery::fillNearest(IByteSource& from, bool isCompressed) {
  Slot& nearest = m_slots.front();
  if (!nearest.isFilled || &from != static_cast<IByteSource*>(nearest.file.get())) {
    const Outcome outcome = isCompressed ? expand(from, *nearest.file) : copy(from, *nearest.file);
    if (outcome != Outcome::kDone)
      return outcome;
  }
  std::string reason = mismatch(*nearest.file, m_sought);
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

DeliveryResult Delivery::publish(bool isCompressed) {
  const std::string& name = m_sought.cachePlace()->file;
  // The nearest first: the others are of use only when it worked.
  Slot& nearest = m_slots.front();
  if (!nearest.file->publish(name) && !hasRightFile(*nearest.folder, name))
    return {{}, "cannot be written", false};
  m_isPublished = true;
  for (std::size_t i = 1; i < m_slots.size(); ++i)
    static_cast<void>(m_slots[i].file->publish(isCompressed ? compressedName(name) : name));
  return {nearest.folder->pathOf(name), {}};
}

}  // namespace symsrv_1_0::internal
