// What the outcome of a search says about the mappings that made suggestions to it.
//
// A suggestion that exists, can be read and is nevertheless no valid file was rejected by a check:
// existence, kind and readability are tested before any check.

#pragma once

#include "quiver/search_results.h"
#include "resolution/path_mapping_table.h"

namespace QV_2_9::internal {

/// `first` is the first valid file of the search for `name`.
void observeFirstFile(PathMappingTable& mappings, const wchar_t* name, IValidFile& first);

/// `invalidFiles` are all candidates that were rejected; the iterator is left at its beginning.
void observeRejectedFiles(PathMappingTable& mappings,
                          const wchar_t* name,
                          IInvalidFileIterator& invalidFiles);

/// Whether `answer` is one of the candidates that were rejected, accepted all the same; the
/// iterator is left at its beginning.
bool isRejected(IValidFile& answer, IInvalidFileIterator& invalidFiles);

/// Learns from the answer of a search where a check confirmed it and it lies with others of its
/// tree: copies in archives and in the system's directories do not.
void learnFromAnswer(PathMappingTable& mappings, const wchar_t* name, IValidFile& answer);

}  // namespace QV_2_9::internal
