// Chains of entries in flat vectors.

#include "paku/name_index.h"

#include <algorithm>
#include <type_traits>
#include <utility>

namespace PAKU_3_1::internal {
namespace {

/// No name has more than 255 units, which one of them can hold.
std::size_t lengthOf(NameChar stored) {
  return static_cast<std::make_unsigned_t<NameChar>>(stored);
}

constexpr std::size_t kLoad = 2;  // entries per bucket, at most
constexpr std::size_t kFewestBuckets = 16;
constexpr std::size_t kWorthTidying = 1024;

}  // namespace

NameIndex::Number NameIndex::addRoot() {
  return newDirectory(kNone);
}

NameIndex::Number NameIndex::addEntry(Number directory, NameView name, Kind kind) {
  const std::uint32_t stored = storeName(name);
  const Number number = newEntry();
  Entry& entry = m_entries[number];
  entry.name = stored;
  entry.hash = nameHash(name);
  entry.directory = directory;
  entry.content = kind == Kind::kFile        ? kPlainFile
                  : kind == Kind::kDirectory ? kClosedDirectory
                                             : kSymbolicLink;
  entry.previousInDirectory = kNone;
  entry.nextInDirectory = std::exchange(m_directories[directory].first, number);
  if (entry.nextInDirectory != kNone)
    m_entries[entry.nextInDirectory].previousInDirectory = number;
  ++m_entryCount;
  if (m_entryCount > kLoad * m_heads.size())
    chainAll(std::max(kFewestBuckets, 4 * m_heads.size()));
  else
    chain(number);
  if (kind != Kind::kFile)
    countOpaque(entry.hash, true);
  return number;
}

NameIndex::Number NameIndex::open(Number entry) {
  const Number directory = newDirectory(entry);
  m_entries[entry].content = directory;
  countOpaque(m_entries[entry].hash, false);
  return directory;
}

void NameIndex::close(Number directory) {
  Entry& entry = m_entries[entryOf(directory)];
  entry.content = kClosedDirectory;
  countOpaque(entry.hash, true);
  m_freeDirectories.push_back(directory);
}

NameIndex::Number NameIndex::find(Number directory, NameView name) const {
  if (m_heads.empty())
    return kNone;
  const std::uint32_t hash = nameHash(name);
  Number i = m_heads[bucketOf(hash)];
  while (i != kNone && !(m_entries[i].directory == directory && m_entries[i].hash == hash &&
                         this->name(i) == name))
    i = m_entries[i].nextInBucket;
  return i;
}

NameView NameIndex::name(Number entry) const {
  const NameChar* const stored = &m_names[m_entries[entry].name];
  return {stored + 1, lengthOf(*stored)};
}

NameIndex::Kind NameIndex::kind(Number entry) const {
  switch (m_entries[entry].content) {
    case kPlainFile:
      return Kind::kFile;
    case kSymbolicLink:
      return Kind::kLink;
    default:
      return Kind::kDirectory;
  }
}

NameIndex::Number NameIndex::openedAs(Number entry) const {
  const Number content = m_entries[entry].content;
  return content < kSymbolicLink ? content : kNone;
}

NameIndex::Number NameIndex::rootOf(Number directory, std::size_t& level) const {
  level = 0;
  for (Number entry; (entry = m_directories[directory].entry) != kNone; ++level)
    directory = m_entries[entry].directory;
  return directory;
}

NameString NameIndex::path(Number directory, NameChar separator) const {
  std::size_t length = 0;
  for (Number d = directory, e; (e = entryOf(d)) != kNone; d = directoryOf(e))
    length += name(e).size() + 1;
  NameString text(length ? length - 1 : 0, separator);
  for (Number d = directory, e; (e = entryOf(d)) != kNone; d = directoryOf(e)) {
    const NameView component = name(e);
    length -= component.size() + 1;
    std::ranges::copy(component, text.begin() + static_cast<std::ptrdiff_t>(length));
  }
  return text;
}

std::size_t NameIndex::bytes() const {
  constexpr std::size_t kMapNode = 32;
  return m_names.bytes() + m_entries.bytes() + m_directories.capacity() * sizeof(Directory) +
         (m_heads.capacity() + m_freeDirectories.capacity()) * sizeof(Number) +
         m_opaque.size() * kMapNode + m_opaque.bucket_count() * sizeof(void*);
}

NameIndex::Number NameIndex::newDirectory(Number entry) {
  if (m_freeDirectories.empty()) {
    m_directories.push_back({entry, kNone});
    return static_cast<Number>(m_directories.size() - 1);
  }
  const Number directory = m_freeDirectories.back();
  m_freeDirectories.pop_back();
  m_directories[directory] = {entry, kNone};
  return directory;
}

NameIndex::Number NameIndex::newEntry() {
  if (m_freeEntry != kNone)
    return std::exchange(m_freeEntry, m_entries[m_freeEntry].nextInDirectory);
  return static_cast<Number>(m_entries.append(1));
}

std::uint32_t NameIndex::storeName(NameView name) {
  const std::size_t at = m_names.append(name.size() + 1);
  m_names[at] = static_cast<NameChar>(name.size());
  std::ranges::copy(name, &m_names[at] + 1);
  return static_cast<std::uint32_t>(at);
}

void NameIndex::chain(Number number) {
  Entry& entry = m_entries[number];
  entry.nextInBucket = std::exchange(m_heads[bucketOf(entry.hash)], number);
}

/// Chains all entries anew, also one that was in no chain yet; the others become free.
void NameIndex::chainAll(std::size_t buckets) {
  m_heads.assign(buckets, kNone);
  m_freeEntry = kNone;
  m_removed = 0;
  for (Number i = 0; i < m_entries.size(); ++i) {
    if (m_entries[i].directory != kNone)
      chain(i);
    else
      m_entries[i].nextInDirectory = std::exchange(m_freeEntry, i);
  }
}

void NameIndex::unlink(Number number) {
  Entry& entry = m_entries[number];
  if (entry.previousInDirectory == kNone)
    m_directories[entry.directory].first = entry.nextInDirectory;
  else
    m_entries[entry.previousInDirectory].nextInDirectory = entry.nextInDirectory;
  if (entry.nextInDirectory != kNone)
    m_entries[entry.nextInDirectory].previousInDirectory = entry.previousInDirectory;
  if (entry.content == kClosedDirectory || entry.content == kSymbolicLink)
    countOpaque(entry.hash, false);
  m_wasted += name(number).size() + 1;
  entry.directory = kNone;
  ++m_removed;
  --m_entryCount;
}

void NameIndex::countOpaque(std::uint32_t hash, bool isMore) {
  if (isMore)
    ++m_opaque[hash];
  else if (const auto found = m_opaque.find(hash); --found->second == 0)
    m_opaque.erase(found);
}

void NameIndex::tidy() {
  if (m_removed > kWorthTidying && m_removed > m_entryCount / 2)
    chainAll(m_heads.size());
  compactNames();
}

void NameIndex::compactNames() {
  constexpr std::size_t kWorthIt = 4096;
  if (m_wasted < kWorthIt || m_wasted * 2 < m_names.size())
    return;
  BlockVector<NameChar, 16384> old = std::exchange(m_names, {});
  m_wasted = 0;
  for (std::size_t i = 0; i < m_entries.size(); ++i) {
    Entry& entry = m_entries[i];
    if (entry.directory == kNone)
      continue;
    const NameChar* const stored = &old[entry.name];
    entry.name = storeName({stored + 1, lengthOf(*stored)});
  }
}

}  // namespace PAKU_3_1::internal
