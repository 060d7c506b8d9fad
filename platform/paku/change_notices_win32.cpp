// Directory changes through a completion port.

#include "paku/change_notices_win32.h"

#include <atomic>
#include <cstddef>
#include <utility>

namespace PAKU_3_1::internal {
namespace {

std::atomic<bool> s_areLateOnesTrusted{false};

FileHandle portOf(HANDLE file) {
  const HANDLE port = CreateIoCompletionPort(file, nullptr, 0, 1);
  return port ? FileHandle(port) : FileHandle();
}

}  // namespace

ChangeNotices::ChangeNotices(FileHandle directory)
    : m_directory(std::move(directory)),
      m_port(portOf(m_directory.get())),
      m_buffer(std::make_unique<DWORD[]>(kBufferSize / sizeof(DWORD))) {
  m_isAsking = m_port && ask();
}

ChangeNotices::~ChangeNotices() {
  if (!m_isAsking)
    return;
  CancelIoEx(m_directory.get(), &m_request);
  // The buffer is ours again when the port has told of the end; a handle with a port tells nothing.
  DWORD size = 0;
  ULONG_PTR key = 0;
  OVERLAPPED* request = nullptr;
  GetQueuedCompletionStatus(m_port.get(), &size, &key, &request, INFINITE);
}

bool ChangeNotices::ask() {
  constexpr DWORD kChanges = FILE_NOTIFY_CHANGE_FILE_NAME | FILE_NOTIFY_CHANGE_DIR_NAME |
                             FILE_NOTIFY_CHANGE_ATTRIBUTES | FILE_NOTIFY_CHANGE_SECURITY;
  m_request = {};
  return ReadDirectoryChangesW(m_directory.get(),
                               m_buffer.get(),
                               kBufferSize,
                               TRUE,
                               kChanges,
                               nullptr,
                               &m_request,
                               nullptr) != 0;
}

bool ChangeNotices::take(std::vector<std::wstring>& paths) {
  while (m_isAsking) {
    DWORD size = 0;
    ULONG_PTR key = 0;
    OVERLAPPED* request = nullptr;
    const BOOL isDone = GetQueuedCompletionStatus(m_port.get(), &size, &key, &request, 0);
    if (!request)
      return true;
    m_isAsking = false;
    // No bytes: there were more changes than the system remembers.
    if (!isDone || size == 0 || !takePortion(size, paths))
      return false;
    m_isAsking = ask();
  }
  return false;
}

bool ChangeNotices::takePortion(DWORD size, std::vector<std::wstring>& paths) const {
  const auto* const bytes = reinterpret_cast<const std::byte*>(m_buffer.get());
  for (DWORD at = 0; at + offsetof(FILE_NOTIFY_INFORMATION, FileName) <= size;) {
    const auto* notice = reinterpret_cast<const FILE_NOTIFY_INFORMATION*>(bytes + at);
    paths.emplace_back(notice->FileName, notice->FileNameLength / sizeof(wchar_t));
    if (notice->NextEntryOffset == 0)
      return true;
    at += notice->NextEntryOffset;
  }
  return false;
}

bool areNoticesInTime() {
  static const bool isEmulated =
      GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
  return !isEmulated || s_areLateOnesTrusted;
}

void trustLateNotices(bool isTrusted) {
  s_areLateOnesTrusted = isTrusted;
}

}  // namespace PAKU_3_1::internal
