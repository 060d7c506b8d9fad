// POSIX paths have no drives, but links: ".." behind a link is the parent of the link's target.

#include <climits>
#include <optional>
#include <unistd.h>

#include "paku/canonical_path.h"
#include "paku/native_path_posix.h"
#include "paku/system_path.h"
#include "paku/text_encoding.h"

namespace PAKU_3_1::internal {
namespace {

std::optional<std::wstring> linkTarget(const std::wstring& path) {
  std::string native;
  if (!nativePath(path, native))
    return std::nullopt;
  char target[PATH_MAX];  // no longer target can be made
  const ssize_t length = readlink(native.c_str(), target, sizeof target);
  if (length < 0)
    return std::nullopt;
  return decode({target, static_cast<std::size_t>(length)});
}

}  // namespace

std::wstring withoutDriveDirectory(std::wstring text) {
  return text;
}

std::wstring canonicalSystemPath(const std::wstring& text, PathStyle style) {
  // A path in the other style names nothing here whose links could be read.
  return style == PathStyle::kPosix ? canonicalPath(text, style, linkTarget)
                                    : canonicalPath(text, style);
}

}  // namespace PAKU_3_1::internal
