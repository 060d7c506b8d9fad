// What a system adds to the grammar of paths.

#pragma once

#include <string>

#include "paku/path_style.h"

namespace PAKU_3_1::internal {

/// Returns the text with a drive that stands for that drive's current directory ("C:x") replaced by
/// the directory. On systems without drives: the text.
std::wstring withoutDriveDirectory(std::wstring text);

/// Returns the canonical path (see canonical_path.h) with what this system adds to the rule.
std::wstring canonicalSystemPath(const std::wstring& text, PathStyle style);

}  // namespace PAKU_3_1::internal
