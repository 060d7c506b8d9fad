// One table, ordered by what the calls are for.

#include <cerrno>
#include <sys/syscall.h>

#include "fault/system_calls/failing_calls.h"

namespace quiver_test {
namespace {

enum class Subject : std::uint8_t { kFile, kRemoval, kTransfer };

constexpr int kMostErrors = 8;

struct Row {
  std::int32_t number;
  const char* name;
  Subject subject;
  std::int32_t errors[kMostErrors];  // up to the first 0
};

constexpr Row kRows[] = {
    {SYS_open, "open", Subject::kFile, {ENOENT, EACCES, EIO, EMFILE, ENOSPC, EINTR}},
    {SYS_openat, "openat", Subject::kFile, {ENOENT, EACCES, EIO, EMFILE, ENOSPC, EINTR}},
    // Done all the same: what a close says comes too late.
    {SYS_close, "close", Subject::kFile, {EIO, EINTR}},
    {SYS_stat, "stat", Subject::kFile, {ENOENT, EACCES, EIO}},
    {SYS_lstat, "lstat", Subject::kFile, {ENOENT, EACCES, EIO}},
    {SYS_fstat, "fstat", Subject::kFile, {EIO}},
    {SYS_newfstatat, "newfstatat", Subject::kFile, {ENOENT, EACCES, EIO}},
    {SYS_statx, "statx", Subject::kFile, {ENOENT, EACCES, EIO}},
    {SYS_access, "access", Subject::kFile, {ENOENT, EACCES, EIO}},
    {SYS_faccessat2, "faccessat2", Subject::kFile, {ENOENT, EACCES, EIO}},
    {SYS_readlink, "readlink", Subject::kFile, {ENOENT, EACCES, EIO}},
    {SYS_statfs, "statfs", Subject::kFile, {EIO, EINTR}},
    {SYS_fstatfs, "fstatfs", Subject::kFile, {EIO, EINTR}},
    {SYS_ioctl, "ioctl", Subject::kFile, {EIO}},
    {SYS_getdents64, "getdents64", Subject::kFile, {ENOENT, EIO, EINTR, kShort}},
    {SYS_read, "read", Subject::kFile, {EIO, EINTR, kShort}},
    {SYS_pread64, "pread64", Subject::kFile, {EIO, EINTR, kShort}},
    {SYS_readv, "readv", Subject::kFile, {EIO, EINTR}},
    {SYS_lseek, "lseek", Subject::kFile, {EIO}},
    {SYS_write, "write", Subject::kFile, {ENOSPC, EIO, EINTR, kShort}},
    {SYS_pwrite64, "pwrite64", Subject::kFile, {ENOSPC, EIO, EINTR, kShort}},
    {SYS_writev, "writev", Subject::kFile, {ENOSPC, EIO, EINTR}},
    {SYS_copy_file_range, "copy_file_range", Subject::kFile, {ENOSPC, EIO, EINTR, kShort}},
    {SYS_ftruncate, "ftruncate", Subject::kFile, {EIO, EINTR}},
    {SYS_fsync, "fsync", Subject::kFile, {ENOSPC, EIO, EINTR}},
    {SYS_fdatasync, "fdatasync", Subject::kFile, {ENOSPC, EIO, EINTR}},
    {SYS_utimensat, "utimensat", Subject::kFile, {EACCES, EIO}},
    {SYS_fchmod, "fchmod", Subject::kFile, {EACCES, EIO}},
    {SYS_chmod, "chmod", Subject::kFile, {EACCES, EIO}},
    {SYS_fchmodat, "fchmodat", Subject::kFile, {EACCES, EIO}},
    {SYS_mkdir, "mkdir", Subject::kFile, {ENOENT, EACCES, EIO, ENOSPC}},
    {SYS_mkdirat, "mkdirat", Subject::kFile, {ENOENT, EACCES, EIO, ENOSPC}},
    {SYS_rename, "rename", Subject::kFile, {ENOENT, EACCES, EIO, ENOSPC}},
    {SYS_renameat, "renameat", Subject::kFile, {ENOENT, EACCES, EIO, ENOSPC}},
    {SYS_renameat2, "renameat2", Subject::kFile, {ENOENT, EACCES, EIO, ENOSPC, EINVAL}},
    {SYS_linkat, "linkat", Subject::kFile, {ENOENT, EACCES, EIO, ENOSPC}},
    {SYS_unlink, "unlink", Subject::kRemoval, {EACCES, EIO}},
    {SYS_unlinkat, "unlinkat", Subject::kRemoval, {EACCES, EIO}},
    {SYS_rmdir, "rmdir", Subject::kRemoval, {EACCES, EIO}},
    {SYS_mmap, "mmap", Subject::kFile, {EACCES, ENOMEM}},
    {SYS_inotify_init1, "inotify_init1", Subject::kFile, {EMFILE}},
    {SYS_inotify_add_watch, "inotify_add_watch", Subject::kFile, {ENOENT, EACCES, ENOSPC}},
    {SYS_inotify_rm_watch, "inotify_rm_watch", Subject::kFile, {EINVAL}},
    {SYS_getrandom, "getrandom", Subject::kFile, {EINTR}},
    // No pipes: a sanitizer asks for one to see whether an address can be read.
    {SYS_eventfd2, "eventfd2", Subject::kTransfer, {EMFILE}},
    {SYS_poll, "poll", Subject::kTransfer, {EINTR, ENOMEM}},
    {SYS_ppoll, "ppoll", Subject::kTransfer, {EINTR, ENOMEM}},
    {SYS_socket, "socket", Subject::kTransfer, {EACCES, EMFILE}},
    {SYS_fcntl, "fcntl", Subject::kTransfer, {EMFILE, EINTR}},
    {SYS_socketpair, "socketpair", Subject::kTransfer, {EMFILE}},
    {SYS_connect, "connect", Subject::kTransfer, {EACCES, ECONNREFUSED}},
    {SYS_getsockopt, "getsockopt", Subject::kTransfer, {ENOMEM}},
    {SYS_setsockopt, "setsockopt", Subject::kTransfer, {ENOMEM}},
    {SYS_getsockname, "getsockname", Subject::kTransfer, {ENOMEM}},
    {SYS_getpeername, "getpeername", Subject::kTransfer, {ENOTCONN}},
    {SYS_sendto, "sendto", Subject::kTransfer, {EIO, ECONNRESET, EINTR, kShort}},
    {SYS_recvfrom, "recvfrom", Subject::kTransfer, {EIO, ECONNRESET, EINTR, kShort}},
};

const Row* rowOf(std::int32_t number) {
  for (const Row& row : kRows)
    if (row.number == number)
      return &row;
  return nullptr;
}

}  // namespace

std::span<const std::int32_t> errorsOf(std::int32_t number) {
  const Row* const row = rowOf(number);
  std::size_t count = 0;
  while (row && count < kMostErrors && row->errors[count] != 0) ++count;
  return row ? std::span(row->errors, count) : std::span<const std::int32_t>();
}

bool fits(const NotedCall& call, std::int32_t error) {
  if (error == kShort && !call.canBeShort)
    return false;
  const bool isOpen = call.number == SYS_open || call.number == SYS_openat;
  if (error == ENOSPC && isOpen && !call.makesFile)
    return false;
  for (const std::int32_t possible : errorsOf(call.number))
    if (possible == error)
      return true;
  return false;
}

bool isRemoval(std::int32_t number) {
  const Row* const row = rowOf(number);
  return row && row->subject == Subject::kRemoval;
}

bool isTransfer(std::int32_t number) {
  const Row* const row = rowOf(number);
  return row && row->subject == Subject::kTransfer;
}

bool mayLast(std::int32_t error) {
  return error == EIO || error == EMFILE || error == ENOSPC || error == EACCES;
}

bool isToBeOvercome(std::int32_t error) {
  return error == EINTR || error == kShort;
}

const char* nameOf(std::int32_t number) {
  const Row* const row = rowOf(number);
  return row ? row->name : "?";
}

}  // namespace quiver_test
