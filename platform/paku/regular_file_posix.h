// Opening what must be a regular file.

#pragma once

#include <string>
#include <sys/stat.h>

#include "paku/file_descriptor_posix.h"

namespace PAKU_3_1::internal {

/// Opens a regular file for reading. Returns 0 and fills `file`, or an errno value. `status` is
/// filled when something bears the name.
/// Special files are not opened at all: that alone can act on a device or wake a writer.
int openRegularFile(const std::string& path, FileDescriptor& file, struct stat& status);

}  // namespace PAKU_3_1::internal
