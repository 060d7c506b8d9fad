// See archive_contents.h.

#include "fault/archive_contents.h"

#include <string>

#include "quiver/checksum.h"

namespace quiver_test {
namespace {

/// Empty for a file that cannot be read.
std::wstring md5Of(const std::filesystem::path& file) {
  using namespace QV_2_9;
  const ObjectPtr<IChecksum> checksum =
      IChecksumCalculator::create()->calculate(toWide(file).c_str(), ctMD5);
  return checksum ? checksum->getValue() : L"";
}

std::vector<std::filesystem::path>& placeOf(const std::filesystem::path& file,
                                            ArchiveContents& contents) {
  const std::filesystem::path folder = file.parent_path();
  if (file.filename() != folder.parent_path().filename())
    return contents.others;
  return md5Of(file) == toWide(folder.filename()) ? contents.whole : contents.wrong;
}

}  // namespace

ArchiveContents contentsOf(const NativePath& archive) {
  ArchiveContents contents;
  if (!std::filesystem::exists(archive.get()))
    return contents;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(archive.get()))
    if (!entry.is_directory())
      placeOf(entry.path(), contents).push_back(entry.path());
  return contents;
}

}  // namespace quiver_test
