// The work of `quiver resolve`: reads the manifest, resolves, prints and writes.

#pragma once

#include "command_line.h"
#include "resolve_options.h"

namespace quiver_tool {

Answer runResolve(const ResolveOptions& options);

}  // namespace quiver_tool
