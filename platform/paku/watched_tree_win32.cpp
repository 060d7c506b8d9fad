// Reading a tree into the index, and the changes that the system tells of.

#include "paku/watched_tree_win32.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "paku/directory_listing_win32.h"
#include "paku/searched_directory_win32.h"

namespace PAKU_3_1::internal {
namespace {

constexpr NameIndex::Number kNone = NameIndex::kNone;

/// Only file systems of this machine, and those that are known to tell of every change.
bool tellsOfChanges(HANDLE directory) {
  FILE_REMOTE_PROTOCOL_INFO remote = {};
  if (GetFileInformationByHandleEx(directory, FileRemoteProtocolInfo, &remote, sizeof remote))
    return false;
  std::array<wchar_t, MAX_PATH + 1> name = {};
  if (!GetVolumeInformationByHandleW(
          directory, nullptr, 0, nullptr, nullptr, nullptr, name.data(), MAX_PATH + 1))
    return false;
  const std::wstring_view text(name.data());
  return text == L"NTFS" || text == L"ReFS";
}

/// The parts of a path in front of and behind its last separator.
std::pair<std::wstring_view, std::wstring_view> split(std::wstring_view path) {
  const std::size_t separator = path.rfind(L'\\');
  if (separator == std::wstring_view::npos)
    return {L"", path};
  return {path.substr(0, separator), path.substr(separator + 1)};
}

NameIndex::Kind kindOf(const WIN32_FIND_DATAW& entry) {
  if (isLink(entry))
    return NameIndex::Kind::kLink;
  return isRealDirectory(entry) ? NameIndex::Kind::kDirectory : NameIndex::Kind::kFile;
}

/// Opens a tree that tells of its changes; nothing else is known here.
FileHandle openTelling(const SearchedDirectory& directory) {
  if (!areNoticesInTime())
    return {};
  FileHandle handle = openDirectory(directory.path(), FILE_LIST_DIRECTORY, FILE_FLAG_OVERLAPPED);
  FileIdentity identity;
  const bool isIt = handle && identityOf(handle.get(), identity) &&
                    identity == directory.identity() && tellsOfChanges(handle.get());
  return isIt ? std::move(handle) : FileHandle();
}

}  // namespace

bool canBeKnown(const SearchedDirectory& directory, bool isTree) {
  return isTree && openTelling(directory);
}

std::unique_ptr<IKnownDirectories> makeKnownDirectories(bool isTree, std::size_t maxBytes) {
  return std::make_unique<WatchedTree>(isTree, maxBytes);
}

bool WatchedTree::add(const SearchedDirectory& directory) {
  FileHandle handle = m_isTree ? openTelling(directory) : FileHandle();
  if (!handle)
    return false;
  m_notices = std::make_unique<ChangeNotices>(std::move(handle));
  m_identity = directory.identity();
  m_root = m_index.addRoot();
  return m_notices->isOpen() && read(directory.path(), m_root) && isKnownAt(directory);
}

/// Returns false when what was read by its path may have been another directory.
bool WatchedTree::isKnownAt(const SearchedDirectory& directory) const {
  const FileHandle handle = openDirectory(directory.path(), FILE_READ_ATTRIBUTES, 0);
  FileIdentity identity;
  return handle && identityOf(handle.get(), identity) && identity == m_identity && !m_hasTwins;
}

WatchedTree::Number WatchedTree::find(const FileIdentity& identity) const {
  return m_notices && identity == m_identity ? m_root : kNone;
}

bool WatchedTree::refresh(const SearchedDirectory& directory) {
  std::vector<std::wstring> paths;
  if (!m_notices || !m_notices->take(paths))
    return false;
  std::ranges::sort(paths);
  paths.erase(std::unique(paths.begin(), paths.end()), paths.end());
  // Everything goes before anything is added: what was moved within the tree is told of twice.
  for (const std::wstring& path : paths) remove(path);
  return std::ranges::all_of(
             paths, [&](const std::wstring& path) { return addAgain(directory.path(), path); }) &&
         (paths.empty() || isKnownAt(directory));
}

std::size_t WatchedTree::bytes() const {
  constexpr std::size_t kNotices = std::size_t{64} << 10;
  return sizeof *this + m_index.bytes() + (m_notices ? kNotices : 0);
}

bool WatchedTree::read(const std::wstring& root, Number top) {
  std::vector<Number> unread = {top};
  while (!unread.empty()) {
    const Number directory = unread.back();
    unread.pop_back();
    if (!readOne(root, directory, unread))
      return false;
  }
  return true;
}

bool WatchedTree::readOne(const std::wstring& root, Number directory, std::vector<Number>& unread) {
  Listing listing(pathBelow(pathBelow(root, m_index.path(directory, kNameSeparator)), L"*"));
  if (!listing.isOpen()) {
    if (directory == m_root)
      return false;
    m_index.close(directory);  // a walk passes it by
    return true;
  }
  do {
    if (isDots(listing.entry().cFileName))
      continue;
    const Number entry = addEntry(directory, listing.entry());
    if (m_index.kind(entry) == NameIndex::Kind::kDirectory)
      unread.push_back(m_index.open(entry));
  } while (listing.next());
  return GetLastError() == ERROR_NO_MORE_FILES && bytes() <= m_maxBytes;
}

WatchedTree::Number WatchedTree::addEntry(Number directory, const WIN32_FIND_DATAW& entry) {
  m_hasTwins = m_hasTwins || childOf(directory, entry.cFileName) != kNone;
  return m_index.addEntry(directory, entry.cFileName, kindOf(entry));
}

WatchedTree::Number WatchedTree::directoryAt(std::wstring_view below) const {
  Number directory = m_root;
  while (!below.empty() && directory != kNone) {
    const std::size_t end = std::min(below.find(L'\\'), below.size());
    const Number entry = childOf(directory, below.substr(0, end));
    directory = entry == kNone ? kNone : m_index.openedAs(entry);
    below.remove_prefix(std::min(end + 1, below.size()));
  }
  return directory;
}

WatchedTree::Number WatchedTree::childOf(Number directory, std::wstring_view name) const {
  if (const Number exact = m_index.find(directory, name); exact != kNone)
    return exact;
  Number found = kNone;
  m_index.forEachCalled(soughtName(std::wstring(name)), [&](Number entry) {
    if (m_index.directoryOf(entry) == directory)
      found = entry;
  });
  return found;
}

void WatchedTree::remove(const std::wstring& path) {
  const auto [below, name] = split(path);
  const Number directory = directoryAt(below);
  if (directory == kNone)
    return;
  for (Number entry; (entry = childOf(directory, name)) != kNone;)
    m_index.removeEntry(entry, [](Number) {});
}

/// Returns false when the notice cannot be made out. The system may tell the short form of a name,
/// or of something that a later notice tells of again.
bool WatchedTree::addAgain(const std::wstring& root, const std::wstring& path) {
  const auto [below, name] = split(path);
  const Number directory = directoryAt(below);
  if (directory == kNone)
    return below.find(L'~') == std::wstring_view::npos;
  if (name.find(L'~') != std::wstring_view::npos)
    return false;
  if (childOf(directory, name) != kNone)
    return true;  // read with a directory that is new itself
  const Listing listing(pathBelow(root, path));
  if (!listing.isOpen())
    return true;
  const Number entry = addEntry(directory, listing.entry());
  if (m_index.kind(entry) != NameIndex::Kind::kDirectory)
    return bytes() <= m_maxBytes;
  return read(root, m_index.open(entry));
}

}  // namespace PAKU_3_1::internal
