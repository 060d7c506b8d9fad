// An open file that closes itself.

#pragma once

#include <windows.h>
#include <utility>

namespace PAKU_3_1::internal {

class FileHandle final {
 public:
  FileHandle() = default;
  explicit FileHandle(HANDLE handle) : m_handle(handle) {}
  FileHandle(FileHandle&& other) noexcept : m_handle(other.release()) {}
  FileHandle& operator=(FileHandle&& other) noexcept {
    std::swap(m_handle, other.m_handle);
    return *this;
  }
  ~FileHandle() {
    if (m_handle != INVALID_HANDLE_VALUE)
      CloseHandle(m_handle);
  }

  HANDLE get() const { return m_handle; }
  HANDLE release() { return std::exchange(m_handle, INVALID_HANDLE_VALUE); }
  explicit operator bool() const { return m_handle != INVALID_HANDLE_VALUE; }

 private:
  HANDLE m_handle = INVALID_HANDLE_VALUE;
};

inline int lastError() {
  return static_cast<int>(GetLastError());
}

}  // namespace PAKU_3_1::internal
