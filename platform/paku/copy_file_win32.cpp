// Copies by the system, which takes the times and the streams along, under another name first.

#include <atomic>
#include <string>

#include "paku/file_ops.h"
#include "paku/file_status_win32.h"
#include "paku/native_path_win32.h"
#include "paku/no_dialogs_win32.h"
#include "paku/regular_file_win32.h"

namespace PAKU_3_1 {
namespace {

/// A name beside the target that does not grow with the target's.
std::wstring temporaryName(const std::wstring& target) {
  static std::atomic<unsigned> counter{0};
  return target.substr(0, target.rfind(L'\\') + 1) + L".paku-" +
         std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(counter++) + L".tmp";
}

/// Removes the file unless it got another name.
class TemporaryFile final {
 public:
  explicit TemporaryFile(std::wstring path) : m_path(std::move(path)) {}
  ~TemporaryFile() {
    if (!m_path.empty())
      DeleteFileW(m_path.c_str());
  }

  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  const std::wstring& path() const { return m_path; }

  /// The target cannot be replaced while somebody has it open, which readers do for a moment.
  int publish(const std::wstring& target, bool overwrite) {
    int error = moveTo(target, overwrite);
    for (int attempt = 1; isBusy(error) && overwrite && attempt < kAttempts; ++attempt) {
      Sleep(kPause);
      error = moveTo(target, overwrite);
    }
    return error;
  }

 private:
  static constexpr int kAttempts = 50;
  static constexpr DWORD kPause = 10;  // milliseconds

  static bool isBusy(int error) {
    return error == ERROR_ACCESS_DENIED || error == ERROR_SHARING_VIOLATION;
  }

  int moveTo(const std::wstring& target, bool overwrite) {
    const DWORD replace = overwrite ? MOVEFILE_REPLACE_EXISTING : 0;
    if (!MoveFileExW(m_path.c_str(), target.c_str(), replace | MOVEFILE_WRITE_THROUGH))
      return internal::lastError();
    m_path.clear();
    return 0;
  }

  std::wstring m_path;
};

/// Lets the copy of a read-only file be replaced later, and sends it to the disk.
int finishCopy(const std::wstring& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES ||
      !SetFileAttributesW(path.c_str(), attributes & ~DWORD{FILE_ATTRIBUTE_READONLY}))
    return internal::lastError();
  const internal::FileHandle file(
      CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
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

int copyFile(const Filename& from, const Filename& to, bool overwrite) {
  const internal::NoDialogs noDialogs;
  std::wstring source;
  std::wstring target;
  if (!internal::nativePath(from.text().text(), source) ||
      !internal::nativePath(to.text().text(), target))
    return ERROR_FILE_NOT_FOUND;
  internal::FileHandle file;  // held until the copy is made: what is copied is what was looked at
  if (const int error = internal::openRegularFile(source, file))
    return error;
  if (const int refused = targetRefusal(target, overwrite))
    return refused;
  // Removed by its destructor also when the copy broke off half-way.
  TemporaryFile copy(temporaryName(target));
  if (!CopyFileW(source.c_str(), copy.path().c_str(), TRUE))
    return internal::lastError();
  if (const int error = finishCopy(copy.path()))
    return error;
  file = internal::FileHandle();  // it may be the target
  return copy.publish(target, overwrite);
}

}  // namespace PAKU_3_1
