// Paths as Windows takes them.

#pragma once

#include <string>

namespace symsrv_1_0::internal {

/// Returns the text with "\" between names, and in the form that has no limit when it is long.
/// Empty for a text that can name nothing.
std::wstring systemPath(const std::string& path);

}  // namespace symsrv_1_0::internal
