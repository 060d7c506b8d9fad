// A descriptor that belongs to this process alone: a child that a fork made gives it up.
//
// Descriptors are entered in one table of the process, without a lock, so that a child can close
// them whatever its parent's threads were doing.

#pragma once

#include "paku/file_descriptor_posix.h"

namespace PAKU_3_1::internal {

class OwnDescriptor final {
 public:
  OwnDescriptor() = default;
  /// Takes the descriptor; when the table is full it is closed and this one is empty.
  explicit OwnDescriptor(int fd);
  ~OwnDescriptor();

  OwnDescriptor(const OwnDescriptor&) = delete;
  OwnDescriptor& operator=(const OwnDescriptor&) = delete;

  int get() const { return m_fd.get(); }
  explicit operator bool() const { return static_cast<bool>(m_fd); }

  /// Closes all that the table has. For a child after a fork; what held them must not be used.
  static void closeAll();

 private:
  FileDescriptor m_fd;
};

}  // namespace PAKU_3_1::internal
