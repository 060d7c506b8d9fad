// What fuzzers ask of the parts of the library that take texts, or sequences of calls. Each takes
// anything, ends soon and harms nothing; a broken promise ends the process.

#pragma once

#include <string_view>

namespace quiver_fuzz {

/// A flag, then a path: its parts, its canonical form and what it is looked for as, in both styles.
void fuzzPath(std::string_view bytes);

/// A separator and a list; a line for two texts that are compared.
void fuzzList(std::string_view bytes);

/// The drives of a machine and a path that was recorded as the kernel names it.
void fuzzDevicePath(std::string_view bytes);

/// Calls of a list of search directories, compared with one that looks through all it has.
void fuzzDirList(std::string_view bytes);

/// Calls of callback objects and of those who refer to them, compared with a plain table.
void fuzzEvents(std::string_view bytes);

}  // namespace quiver_fuzz
