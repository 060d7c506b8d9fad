// The one spelling of a path under which two texts are compared.
//
// Lexical, so that it works for texts that name nothing on this machine: separators become the
// style's own, doubled ones and "." go, ".." removes what is before it but never the root, and no
// separator is left at the end except behind a root. Letter case stays.

#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "paku/path_style.h"

namespace PAKU_3_1::internal {

/// Answers the target of the symbolic link that bears this path, nothing for what is no link.
using LinkReader = std::function<std::optional<std::wstring>(const std::wstring& path)>;

/// Returns the canonical text; empty for an empty one, "." for a relative text of which nothing is
/// left. With a link reader a ".." behind a link leads to the parent of the link's target, as it
/// does when the path is opened.
std::wstring canonicalPath(std::wstring_view text,
                           PathStyle style,
                           const LinkReader& readLink = nullptr);

}  // namespace PAKU_3_1::internal
