// See archive.h.

#include "resolution/archive.h"

#include <optional>
#include <string>

#include "paku/file.h"
#include "paku/file_info.h"
#include "paku/file_ops.h"
#include "paku/file_state.h"
#include "paku/filename.h"
#include "paku/path_style.h"
#include "paku/path_syntax.h"

#include "os/path_utils.h"
#include "quiver/checksum.h"
#include "resolution/category_folders.h"

namespace QV_2_9::internal {
namespace {

constexpr int kAttempts = 2;

PAKU_3_1::Filename absoluteFilename(const wchar_t* path) {
  return PAKU_3_1::Filename(path).toAbsoluteFilename(PAKU_3_1::Filename());
}

/// The absolute path of another system would be taken for the name of an entry of the current
/// directory.
bool isAbsoluteHere(const std::wstring& path) {
  using namespace PAKU_3_1::internal;
  return isAbsolutePath(path, systemPathStyle());
}

bool ensureDirectory(const std::wstring& path) {
  FileStatus status;
  if (fileStatus(path.c_str(), status) && status.isDirectory)
    return true;
  return PAKU_3_1::createDirectory(absoluteFilename(path.c_str())) == 0;
}

/// Steps from `dir` into its folder `name`, making it when it is missing. A file name of one system
/// can read as the absolute path of another; it must not lead out of the archive.
bool enterFolder(std::wstring& dir, const wchar_t* name) {
  std::wstring folder = joinPath(dir.c_str(), name);
  if (!folder.starts_with(dir) || !ensureDirectory(folder))
    return false;
  dir.swap(folder);
  return true;
}

/// Returns nothing when the file is no longer in the state that its checksum is of; where the file
/// system tells no state, `state` is null.
std::optional<archive_result_t> copyTo(const wchar_t* file,
                                       const PAKU_3_1::FileState* state,
                                       const std::wstring& target) {
  PAKU_3_1::FileModifiable(PAKU_3_1::Filename(target), true);
  const int error =
      PAKU_3_1::copyFile(absoluteFilename(file), absoluteFilename(target.c_str()), true, state);
  if (error == PAKU_3_1::kFileHasChanged)
    return std::nullopt;
  return error == 0 ? arArchived : arCopyFailed;
}

/// Copies `file` into the folder of its checksum in `dir`. Returns nothing when it changed
/// meanwhile.
std::optional<archive_result_t> archiveVersion(IChecksumCalculator& calculator,
                                               const wchar_t* file,
                                               std::wstring dir,
                                               const std::wstring& name,
                                               std::int64_t now) {
  const std::optional<PAKU_3_1::FileState> state = PAKU_3_1::fileState(absoluteFilename(file));
  const ObjectPtr<IChecksum> checksum = calculator.calculate(file, ctMD5);
  if (!checksum)
    return arNoChecksum;
  if (!enterFolder(dir, checksum->getValue()))
    return arCannotCreateDirectory;

  const std::wstring target = joinPath(dir.c_str(), name.c_str());
  PAKU_3_1::removeAbandonedCopies(absoluteFilename(target.c_str()), now);
  if (exists(target.c_str()))
    return arAlreadyArchived;
  return copyTo(file, state ? &*state : nullptr, target);
}

}  // namespace

archive_result_t archiveInto(const wchar_t* archiveDir,
                             const wchar_t* file,
                             std::int32_t category,
                             std::int64_t now) {
  std::wstring dir = toAbsolutePath(archiveDir);
  const std::wstring name = fileNameOf(file);
  if (!isAbsoluteHere(dir) || !ensureDirectory(dir) ||
      !enterFolder(dir, categoryFolder(category)) || !enterFolder(dir, name.c_str()))
    return arCannotCreateDirectory;

  const ObjectPtr<IChecksumCalculator> calculator = IChecksumCalculator::create();
  if (!calculator)
    return arNoChecksumCalculator;
  // A file that is replaced is taken as it is then; one that keeps changing is not taken.
  for (int attempt = 0; attempt < kAttempts; ++attempt)
    if (const auto result = archiveVersion(*calculator, file, dir, name, now))
      return *result;
  return arCopyFailed;
}

}  // namespace QV_2_9::internal
