// Files through handles. Folders are known by their paths: each name on the way is looked at before
// it is entered.

#include <windows.h>

#include "paku/text_encoding.h"
#include "symsrv/files.h"
#include "symsrv/system_path_win32.h"

namespace symsrv_1_0::internal {
namespace {

constexpr int kTriesToReplace = 5;  // of a file that a scanner may have open
constexpr DWORD kBetweenTries = 20;

HANDLE handleOf(std::intptr_t handle) {
  return reinterpret_cast<HANDLE>(handle);
}

bool readAt(std::intptr_t handle, std::uint64_t offset, void* to, std::size_t count) {
  char* next = static_cast<char*>(to);
  while (count > 0) {
    OVERLAPPED place{};
    place.Offset = static_cast<DWORD>(offset);
    place.OffsetHigh = static_cast<DWORD>(offset >> 32);
    const DWORD wanted = static_cast<DWORD>(count < (1u << 30) ? count : 1u << 30);
    DWORD got = 0;
    if (!ReadFile(handleOf(handle), next, wanted, &got, &place) || got == 0)
      return false;
    next += got;
    offset += got;
    count -= got;
  }
  return true;
}

bool isRegular(HANDLE handle, Links links, std::uint64_t& size) {
  BY_HANDLE_FILE_INFORMATION info{};
  if (GetFileType(handle) != FILE_TYPE_DISK || !GetFileInformationByHandle(handle, &info))
    return false;
  size = std::uint64_t{info.nFileSizeHigh} << 32 | info.nFileSizeLow;
  const bool isLink = (info.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
  return (info.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0 &&
         !(isLink && links == Links::kRefuse);
}

bool isFolder(const std::string& path, Links links) {
  const DWORD attributes = GetFileAttributesW(systemPath(path).c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0)
    return false;
  return links == Links::kFollow || (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0;
}

bool isSeparator(char c) {
  return c == '\\' || c == '/';
}

std::string joined(const std::string& folder, const std::string& name) {
  return folder + (isSeparator(folder.back()) ? "" : "\\") + name;
}

/// Makes the folder with all that lead to it.
void makeAll(const std::string& path) {
  for (std::size_t i = 1; i <= path.size(); ++i)
    if (i == path.size() || isSeparator(path[i]))
      CreateDirectoryW(systemPath(path.substr(0, i)).c_str(), nullptr);
}

}  // namespace

std::unique_ptr<FileSource> FileSource::open(const std::string& path, Links links) {
  const HANDLE handle =
      CreateFileW(systemPath(path).c_str(),
                  GENERIC_READ,
                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                  nullptr,
                  OPEN_EXISTING,
                  links == Links::kRefuse ? FILE_FLAG_OPEN_REPARSE_POINT : FILE_ATTRIBUTE_NORMAL,
                  nullptr);
  if (handle == INVALID_HANDLE_VALUE)
    return nullptr;
  std::uint64_t size = 0;
  if (!isRegular(handle, links, size)) {
    CloseHandle(handle);
    return nullptr;
  }
  try {
    return std::make_unique<FileSource>(reinterpret_cast<std::intptr_t>(handle), size);
  } catch (...) {
    CloseHandle(handle);
    throw;
  }
}

FileSource::~FileSource() {
  CloseHandle(handleOf(m_handle));
}

bool FileSource::read(std::uint64_t offset, void* to, std::size_t count) {
  return offset <= m_size && count <= m_size - offset && readAt(m_handle, offset, to, count);
}

NewFile::NewFile(std::shared_ptr<Folder> folder, std::string name, std::intptr_t handle)
    : m_folder(std::move(folder)), m_name(std::move(name)), m_handle(handle) {}

NewFile::~NewFile() {
  if (m_handle != 0)
    CloseHandle(handleOf(m_handle));
  if (m_name.empty())
    return;
  try {
    m_folder->remove(m_name);
  } catch (const std::bad_alloc&) {
    // It stays for the next sweep: without memory it has no path.
  }
}

bool NewFile::read(std::uint64_t offset, void* to, std::size_t count) {
  if (m_handle == 0 || offset > m_size || count > m_size - offset)
    return false;
  const bool isRead = readAt(m_handle, offset, to, count);
  m_isUnreadable = m_isUnreadable || !isRead;
  return isRead;
}

bool NewFile::write(const void* bytes, std::size_t count) {
  const char* next = static_cast<const char*>(bytes);
  while (count > 0) {
    OVERLAPPED place{};
    place.Offset = static_cast<DWORD>(m_size);
    place.OffsetHigh = static_cast<DWORD>(m_size >> 32);
    const DWORD wanted = static_cast<DWORD>(count < (1u << 30) ? count : 1u << 30);
    DWORD put = 0;
    if (!WriteFile(handleOf(m_handle), next, wanted, &put, &place) || put == 0)
      return false;
    next += put;
    m_size += put;
    count -= put;
  }
  return true;
}

bool NewFile::clear() {
  m_size = 0;
  LARGE_INTEGER start{};
  return SetFilePointerEx(handleOf(m_handle), start, nullptr, FILE_BEGIN) &&
         SetEndOfFile(handleOf(m_handle));
}

bool NewFile::publish(const std::string& name) {
  if (!FlushFileBuffers(handleOf(m_handle)))
    return false;
  CloseHandle(handleOf(m_handle));
  m_handle = 0;
  const std::wstring from = systemPath(m_folder->pathOf(m_name));
  const std::wstring to = systemPath(m_folder->pathOf(name));
  bool isMoved = MoveFileExW(from.c_str(), to.c_str(), 0) != 0;
  for (int tries = 0; !isMoved && tries < kTriesToReplace; ++tries) {
    if (tries > 0)
      Sleep(kBetweenTries);
    isMoved = MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING) != 0;
  }
  if (isMoved) {
    m_name.clear();
    return true;
  }
  // What was written may serve elsewhere.
  const HANDLE again =
      CreateFileW(from.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
  m_handle = again == INVALID_HANDLE_VALUE ? 0 : reinterpret_cast<std::intptr_t>(again);
  return false;
}

std::shared_ptr<Folder> Folder::open(const std::string& root,
                                     const std::vector<std::string>& names,
                                     Missing missing,
                                     Links links,
                                     Access access) {
  if (root.empty())
    return nullptr;
  if (missing == Missing::kMake)
    makeAll(root);
  if (!isFolder(root, Links::kFollow))
    return nullptr;
  std::string path = root;
  for (const std::string& name : names) {
    path = joined(path, name);
    if (missing == Missing::kMake)
      CreateDirectoryW(systemPath(path).c_str(), nullptr);
    if (!isFolder(path, links))
      return nullptr;
  }
  return std::make_shared<Folder>(std::move(path), 0, access);
}

void Folder::removeEmpty(const std::string& root, std::vector<std::string> names) {
  for (; !names.empty(); names.pop_back()) {
    const auto folder = open(root, names, Missing::kRefuse, Links::kRefuse);
    if (!folder || !RemoveDirectoryW(systemPath(folder->m_path).c_str()))
      return;
  }
}

Folder::~Folder() = default;

std::string Folder::pathOf(const std::string& name) const {
  return joined(m_path, name);
}

std::unique_ptr<FileSource> Folder::read(const std::string& name, Links links) const {
  return FileSource::open(pathOf(name), links);
}

bool Folder::remove(const std::string& name) const {
  return DeleteFileW(systemPath(pathOf(name)).c_str()) != 0;
}

std::unique_ptr<NewFile> Folder::create(const std::string& name) {
  static_cast<void>(m_access);  // a folder's list of rights is inherited
  static_cast<void>(m_handle);
  std::string temporary = temporaryName(name);
  const std::wstring path = systemPath(pathOf(temporary));
  const HANDLE handle = CreateFileW(path.c_str(),
                                    GENERIC_READ | GENERIC_WRITE,
                                    FILE_SHARE_READ,
                                    nullptr,
                                    CREATE_NEW,
                                    FILE_ATTRIBUTE_NORMAL,
                                    nullptr);
  if (handle == INVALID_HANDLE_VALUE)
    return nullptr;
  try {
    return std::make_unique<NewFile>(
        shared_from_this(), std::move(temporary), reinterpret_cast<std::intptr_t>(handle));
  } catch (...) {
    CloseHandle(handle);
    DeleteFileW(path.c_str());
    throw;
  }
}

bool isAbsolutePath(const std::string& path) {
  if (path.size() < 3)
    return false;
  const bool isShare = isSeparator(path[0]) && isSeparator(path[1]);
  return isShare || (path[1] == ':' && isSeparator(path[2]));
}

std::string reasonNotPrivate(const std::string& path) {
  // What lies in the user's own folders is the user's own; a link may lead anywhere.
  const DWORD attributes = GetFileAttributesW(systemPath(path).c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES)
    return {};
  if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0)
    return "is a link";
  return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? "" : "is no directory";
}

std::filesystem::path standardPath(const std::string& path) {
  return systemPath(path);
}

std::vector<std::string> pathsIn(const std::string& folder) {
  struct Close {
    using pointer = HANDLE;
    void operator()(HANDLE search) const { FindClose(search); }
  };
  std::vector<std::string> paths;
  WIN32_FIND_DATAW entry{};
  const std::wstring pattern = systemPath(joined(folder, "*"));
  const HANDLE first = FindFirstFileW(pattern.c_str(), &entry);
  if (first == INVALID_HANDLE_VALUE)
    return paths;
  const std::unique_ptr<HANDLE, Close> search(first);
  do {
    std::string name;
    if (PAKU_3_1::encode(entry.cFileName, name) && name != "." && name != "..")
      paths.push_back(joined(folder, name));
  } while (FindNextFileW(search.get(), &entry));
  return paths;
}

std::string fileNameOf(const std::filesystem::path& path) {
  std::string name;
  return PAKU_3_1::encode(path.filename().wstring(), name) ? name : std::string();
}

}  // namespace symsrv_1_0::internal
