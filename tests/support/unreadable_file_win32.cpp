// Files that this process has opened and shares with nobody, itself included.

#include <windows.h>
#include <system_error>
#include <utility>

#include "support/unreadable_file.h"

namespace quiver_test {

UnreadableFile::UnreadableFile(const std::filesystem::path& path) {
  const HANDLE handle = CreateFileW(path.c_str(),
                                    GENERIC_READ | GENERIC_WRITE,
                                    0,
                                    nullptr,
                                    CREATE_NEW,
                                    FILE_ATTRIBUTE_NORMAL,
                                    nullptr);
  if (handle == INVALID_HANDLE_VALUE)
    throw std::system_error(
        static_cast<int>(GetLastError()), std::system_category(), path.string());
  m_handle = reinterpret_cast<std::intptr_t>(handle);
}

UnreadableFile::~UnreadableFile() {
  if (m_handle != 0)
    CloseHandle(reinterpret_cast<HANDLE>(m_handle));
}

UnreadableFile::UnreadableFile(UnreadableFile&& other) noexcept
    : m_handle(std::exchange(other.m_handle, 0)) {}

}  // namespace quiver_test
