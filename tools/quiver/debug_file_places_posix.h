// Where the debug data library looks for the debug file of a module. It opens whatever it finds
// there, and opening a pipe would wait for ever.

#pragma once

#include <elfutils/libdwfl.h>
#include <string>

namespace quiver_tool {

/// The library's setting that these places belong to.
inline constexpr const char* kDebugFilePath = ":.debug:/usr/lib/debug";

/// Returns the first of the places that holds something that is no file to be read, such as a pipe
/// or a device; empty when there is none. `file` is the module's, `link` the name that it gives its
/// debug file, or null.
std::string debugFilePlaceToAvoid(Dwfl_Module* module, const char* file, const char* link);

}  // namespace quiver_tool
