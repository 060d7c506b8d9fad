// The debug data library, asked for sources. It may not survive damaged files: call it in a process
// of its own.

#pragma once

#include "listed_sources.h"

namespace quiver_tool {

SourceList readDwarfSources(const char* path);

}  // namespace quiver_tool
