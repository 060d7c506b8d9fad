// English words for the numbers and catalogue keys of the library.

#pragma once

#include <cstdint>
#include <string>

#include "quiver/resolution_context.h"
#include "quiver/search_dirs.h"

namespace quiver_tool {

/// Returns "binary", "symbol file" or "source file".
const char* categoryWords(QV_2_9::search_category_t category);

/// Returns "binaries", "symbol files" or "sources".
const char* categoryTitle(QV_2_9::search_category_t category);

/// Returns the word of the command line: "bin", "sym", "src" or "all".
const char* categoryWord(QV_2_9::search_category_t category);

/// Returns for example "high-priority directories", "unknown step" for a number that is none.
const char* stepWords(std::int32_t step);

/// Returns "confirmed" or "not contradicted".
const char* confidenceWords(std::int32_t confidence);

/// Returns what an error code says, for example "the source differs".
const char* codeWords(std::int32_t code);

/// Returns what became of a file that was to be archived, for example "archived".
const char* archiveWords(QV_2_9::archive_result_t code);

/// Returns what is wrong with a candidate so that it can follow its path: "cannot be opened" for
/// "%CantOpenFile". A text that is no key of the catalogue is quoted.
std::string reasonWords(const std::wstring& message);

}  // namespace quiver_tool
