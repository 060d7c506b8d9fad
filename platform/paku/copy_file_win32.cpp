// Copies by the system, which takes the times and the streams along, under another name first.

#include <atomic>
#include <string>

#include "paku/file_ops.h"
#include "paku/file_state_win32.h"
#include "paku/file_status_win32.h"
#include "paku/native_path_win32.h"
#include "paku/no_dialogs.h"
#include "paku/regular_file_win32.h"
#include "paku/temporary_name.h"

namespace PAKU_3_1 {
namespace {

std::wstring temporaryPath(const std::wstring& target) {
  static std::atomic<unsigned> counter{0};
  const std::string name = internal::temporaryName(GetCurrentProcessId(), counter++);
  return target.substr(0, target.rfind(L'\\') + 1) + std::wstring(name.begin(), name.end());
}

/// Takes the read-only attribute off a file that is to be replaced, and gives it back to one that
/// was not.
class ReplaceableFile final {
 public:
  explicit ReplaceableFile(const std::wstring& path)
      : m_path(path), m_attributes(GetFileAttributesW(path.c_str())) {
    m_isChanged = m_attributes != INVALID_FILE_ATTRIBUTES &&
                  (m_attributes & FILE_ATTRIBUTE_READONLY) != 0 &&
                  SetFileAttributesW(path.c_str(), m_attributes & ~DWORD{FILE_ATTRIBUTE_READONLY});
  }
  ~ReplaceableFile() {
    if (m_isChanged)
      SetFileAttributesW(m_path.c_str(), m_attributes);
  }

  ReplaceableFile(const ReplaceableFile&) = delete;
  ReplaceableFile& operator=(const ReplaceableFile&) = delete;

  void wasReplaced() { m_isChanged = false; }

 private:
  const std::wstring& m_path;
  const DWORD m_attributes;
  bool m_isChanged;
};

/// A file that was not there before. It is removed unless it got another name.
class TemporaryFile final {
 public:
  explicit TemporaryFile(const std::wstring& target) : m_error(create(target)) {}
  ~TemporaryFile() {
    if (!m_path.empty())
      DeleteFileW(m_path.c_str());
  }

  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  int error() const { return m_error; }
  const std::wstring& path() const { return m_path; }

  int publish(const std::wstring& target, bool overwrite) {
    if (!overwrite)
      return moveTo(target, 0);
    ReplaceableFile former(target);
    const int error = replace(target);
    if (error == 0)
      former.wasReplaced();
    return error;
  }

 private:
  static constexpr int kNames = 1000;
  static constexpr int kAttempts = 50;
  static constexpr DWORD kPause = 10;  // milliseconds

  /// Others may have left files of such names, or be writing them.
  int create(const std::wstring& target) {
    for (int i = 0; i < kNames; ++i) {
      std::wstring path = temporaryPath(target);
      const internal::FileHandle file(
          CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr));
      if (file) {
        m_path = std::move(path);
        return 0;
      }
      if (const int error = internal::lastError(); error != ERROR_FILE_EXISTS)
        return error;
    }
    return ERROR_FILE_EXISTS;
  }

  static bool isBusy(int error) {
    return error == ERROR_ACCESS_DENIED || error == ERROR_SHARING_VIOLATION;
  }

  /// The target cannot be replaced while somebody has it open, which readers do for a moment.
  int replace(const std::wstring& target) {
    int error = moveTo(target, MOVEFILE_REPLACE_EXISTING);
    for (int attempt = 1; isBusy(error) && attempt < kAttempts; ++attempt) {
      Sleep(kPause);
      error = moveTo(target, MOVEFILE_REPLACE_EXISTING);
    }
    return error;
  }

  int moveTo(const std::wstring& target, DWORD flags) {
    if (!MoveFileExW(m_path.c_str(), target.c_str(), flags | MOVEFILE_WRITE_THROUGH))
      return internal::lastError();
    m_path.clear();
    return 0;
  }

  std::wstring m_path;
  const int m_error;
};

/// Lets the copy of a read-only file be replaced later, and sends it to the disk. Scanners like to
/// look at new files: they are let in.
int finishCopy(const std::wstring& path) {
  constexpr DWORD kShared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  const DWORD attributes = GetFileAttributesW(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES ||
      !SetFileAttributesW(path.c_str(), attributes & ~DWORD{FILE_ATTRIBUTE_READONLY}))
    return internal::lastError();
  const internal::FileHandle file(
      CreateFileW(path.c_str(), GENERIC_WRITE, kShared, nullptr, OPEN_EXISTING, 0, nullptr));
  return file && FlushFileBuffers(file.get()) ? 0 : internal::lastError();
}

/// Returns the error that speaks against the target's name, or 0.
int targetRefusal(const std::wstring& target, bool overwrite) {
  const DWORD attributes = GetFileAttributesW(target.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES)
    return 0;
  if (!overwrite)
    return ERROR_FILE_EXISTS;
  return attributes & FILE_ATTRIBUTE_DIRECTORY ? ERROR_ACCESS_DENIED : 0;
}

}  // namespace

int copyFile(const Filename& from, const Filename& to, bool overwrite, const FileState* expected) {
  const NoDialogs noDialogs;
  std::wstring source;
  std::wstring target;
  // The prefix is on both: the other name of the target may be longer than the target's.
  if (!internal::extendedPath(from.text().text(), source) ||
      !internal::extendedPath(to.text().text(), target))
    return ERROR_FILE_NOT_FOUND;
  internal::FileHandle file;  // held until the copy is made: what is copied is what was looked at
  if (const int error = internal::openRegularFile(source, file))
    return error;
  if (expected && internal::stateOf(file.get()) != *expected)
    return kFileHasChanged;
  if (const int refused = targetRefusal(target, overwrite))
    return refused;
  TemporaryFile copy(target);
  if (copy.error() != 0)
    return copy.error();
  if (!CopyFileW(source.c_str(), copy.path().c_str(), FALSE))
    return internal::lastError();
  // The system has opened the file by its name once more.
  if (expected && fileState(from) != *expected)
    return kFileHasChanged;
  if (const int error = finishCopy(copy.path()))
    return error;
  file = internal::FileHandle();  // it may be the target
  return copy.publish(target, overwrite);
}

}  // namespace PAKU_3_1
