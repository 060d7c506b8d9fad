// `quiver explain`: one lookup, and all that was tried on the way.

#pragma once

#include "command_line.h"

namespace quiver_tool {

Answer runExplain(const FindOptions& options);

}  // namespace quiver_tool
