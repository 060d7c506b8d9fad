#include "standard_streams.h"

#include <cerrno>
#include <cstdio>
#include <system_error>

namespace quiver_tool {

std::string writeOutput(const std::string& bytes) {
  errno = 0;
  const bool isWritten = std::fwrite(bytes.data(), 1, bytes.size(), stdout) == bytes.size();
  if (isWritten && std::fflush(stdout) == 0)
    return "";
  return std::generic_category().message(errno);
}

void writeDiagnostics(const std::string& bytes) {
  std::fwrite(bytes.data(), 1, bytes.size(), stderr);
}

}  // namespace quiver_tool
