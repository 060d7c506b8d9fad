// See archive.h.

#include "resolution/archive.h"

#include <string>

#include "paku/file.h"
#include "paku/file_info.h"
#include "paku/file_ops.h"
#include "paku/filename.h"
#include "paku/path_style.h"
#include "paku/path_syntax.h"

#include "os/path_utils.h"
#include "quiver/checksum.h"
#include "resolution/category_folders.h"

namespace QV_2_9::internal {
namespace {

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

bool copyTo(const wchar_t* file, const std::wstring& target) {
  PAKU_3_1::FileModifiable(PAKU_3_1::Filename(target), true);
  return PAKU_3_1::copyFile(absoluteFilename(file), absoluteFilename(target.c_str()), true) == 0;
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
  const ObjectPtr<IChecksum> checksum = calculator->calculate(file, ctMD5);
  if (!checksum)
    return arNoChecksum;
  if (!enterFolder(dir, checksum->getValue()))
    return arCannotCreateDirectory;

  const std::wstring target = joinPath(dir.c_str(), name.c_str());
  PAKU_3_1::removeAbandonedCopies(absoluteFilename(target.c_str()), now);
  if (exists(target.c_str()))
    return arAlreadyArchived;
  return copyTo(file, target) ? arArchived : arCopyFailed;
}

}  // namespace QV_2_9::internal
