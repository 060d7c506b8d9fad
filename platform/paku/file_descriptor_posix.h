// An open file descriptor that closes itself.

#pragma once

#include <unistd.h>
#include <utility>

namespace PAKU_3_1::internal {

class FileDescriptor final {
 public:
  FileDescriptor() = default;
  explicit FileDescriptor(int fd) : m_fd(fd) {}
  FileDescriptor(FileDescriptor&& other) noexcept : m_fd(other.release()) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    std::swap(m_fd, other.m_fd);
    return *this;
  }
  ~FileDescriptor() {
    if (m_fd >= 0)
      close(m_fd);
  }

  int get() const { return m_fd; }
  int release() { return std::exchange(m_fd, -1); }
  explicit operator bool() const { return m_fd >= 0; }

 private:
  int m_fd = -1;
};

}  // namespace PAKU_3_1::internal
