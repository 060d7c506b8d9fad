// Names that come from files of unknown origin, made fit to be parts of paths.

#pragma once

#include <string>
#include <string_view>

namespace symsrv_1_0::internal {

/// Returns what follows the last "/" or "\": recorded names come from any system.
std::string_view lastComponent(std::string_view path);

/// Returns true for a text that is one ordinary file name on every system: no separator, drive,
/// stream, pattern, control character or device name, no dot or blank at its end, not "..", well
/// formed, and short enough that a suffix fits behind it. The same on every system, since caches
/// are copied from one to another.
bool isSafeComponent(std::string_view name);

/// Returns true for the part of a key that stands for an identity.
bool isSafeId(std::string_view id);

}  // namespace symsrv_1_0::internal
