// Remembers servers, misses and keys.

#include "symsrv/memory.h"

#include "symsrv/files.h"
#include "symsrv/text.h"

namespace symsrv_1_0::internal {
namespace {

constexpr std::string_view kSuffix = ".miss";
constexpr std::string_view kFirstLine = "not there at ";
constexpr std::uint64_t kMaxSize = 8192;
constexpr std::uint64_t kMaxTime = std::uint64_t{1} << 40;  // seconds; nobody's clock shows that

std::int64_t now() {
  return std::chrono::duration_cast<std::chrono::seconds>(
             std::chrono::system_clock::now().time_since_epoch())
      .count();
}

std::string fileName(const std::string& address) {
  std::uint64_t hash = 0xCBF29CE484222325;
  for (const char c : address) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3;
  return lowerHex(hash, 16) + std::string(kSuffix);
}

struct Miss {
  std::int64_t time = 0;
  std::string address;
};

std::optional<Miss> readMiss(const Folder& folder, const std::string& name) {
  const std::unique_ptr<FileSource> file = folder.read(name, Links::kRefuse);
  if (!file || file->size() > kMaxSize)
    return std::nullopt;
  std::string text(static_cast<std::size_t>(file->size()), '\0');
  const std::size_t end =
      file->read(0, text.data(), text.size()) ? text.find('\n') : std::string::npos;
  if (end == std::string::npos || text.compare(0, kFirstLine.size(), kFirstLine) != 0)
    return std::nullopt;
  const std::string_view whole = text;
  const std::optional<std::uint64_t> time =
      decimal(whole.substr(kFirstLine.size(), end - kFirstLine.size()));
  if (!time || *time > kMaxTime)
    return std::nullopt;
  return Miss{static_cast<std::int64_t>(*time), std::string(trimmed(whole.substr(end)))};
}

/// A time that lies ahead is none: clocks are set back.
bool isFresh(const Miss& miss, std::chrono::seconds expiry) {
  const std::int64_t age = now() - miss.time;
  return age >= 0 && age < expiry.count();
}

}  // namespace

void ServerMemory::setAside(const std::string& origin,
                            const std::string& reason,
                            std::optional<std::chrono::seconds> time) {
  const Clock::time_point until = time ? Clock::now() + *time : Clock::time_point::max();
  const std::lock_guard guard(m_lock);
  Aside& aside = m_aside[origin];
  if (aside.until < until)
    aside = {reason, until};
}

std::string ServerMemory::reasonAgainst(const std::string& origin) const {
  const std::lock_guard guard(m_lock);
  const auto found = m_aside.find(origin);
  const bool isAside = found != m_aside.end() && Clock::now() < found->second.until;
  return isAside ? found->second.reason : std::string();
}

void MissMemory::remember(const std::string& address, const DirectoryStore* store) {
  {
    const std::lock_guard guard(m_lock);
    m_until[address] = Clock::now() + m_expiry;
  }
  const std::shared_ptr<Folder> folder = store ? store->notes(Folder::Missing::kMake) : nullptr;
  const std::string name = fileName(address);
  const std::unique_ptr<NewFile> file = folder ? folder->create(name) : nullptr;
  const std::string text = std::string(kFirstLine) + std::to_string(now()) + "\n" + address + "\n";
  if (file && file->write(text.data(), text.size()))
    static_cast<void>(file->publish(name));
}

bool MissMemory::isMissing(const std::string& address, const DirectoryStore* store) {
  {
    const std::lock_guard guard(m_lock);
    const auto found = m_until.find(address);
    if (found != m_until.end() && Clock::now() < found->second)
      return true;
  }
  const std::shared_ptr<Folder> folder = store ? store->notes(Folder::Missing::kRefuse) : nullptr;
  const std::optional<Miss> miss = folder ? readMiss(*folder, fileName(address)) : std::nullopt;
  return miss && miss->address == address && isFresh(*miss, m_expiry);
}

void MissMemory::sweep(const DirectoryStore& store) const {
  const std::shared_ptr<Folder> folder = store.notes(Folder::Missing::kRefuse);
  if (!folder)
    return;
  for (const std::string& path : pathsIn(folder->pathOf({}))) {
    const std::string name = fileNameOf(standardPath(path));
    if (name.size() != 16 + kSuffix.size() || name.substr(16) != kSuffix)
      continue;
    const std::optional<Miss> miss = readMiss(*folder, name);
    if (!miss || !isFresh(*miss, m_expiry))
      folder->remove(name);
  }
}

}  // namespace symsrv_1_0::internal
