#include "standard_streams.h"

#include <cerrno>
#include <system_error>

#include "stream_bytes.h"

namespace quiver_tool {

std::string writeOutput(const std::string& bytes) {
  errno = 0;
  return writeBytes(stdout, bytes) ? "" : std::generic_category().message(errno);
}

void writeDiagnostics(const std::string& bytes) {
  writeBytes(stderr, bytes);
}

}  // namespace quiver_tool
