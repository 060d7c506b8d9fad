// Writes manifests.

#pragma once

#include <string>

#include "manifest.h"

namespace quiver_tool {

/// Returns the document, always UTF-8, with a line feed at its end. What of a path is no character
/// becomes U+FFFD.
std::string manifestText(const Manifest& manifest);

}  // namespace quiver_tool
