#include <csignal>
#include <fcntl.h>
#include <unistd.h>

#include "standard_streams.h"
#include "stream_bytes.h"

namespace quiver_tool {
namespace {

// A descriptor that refuses the stream's direction, under the lowest free number: `stream` itself.
void fillWithRefusal(int stream) {
  if (::fcntl(stream, F_GETFD) != -1)
    return;
  const int refused = stream == STDIN_FILENO ? O_WRONLY : O_RDONLY;
  static_cast<void>(::open("/dev/null", refused));
}

}  // namespace

bool writeBytes(std::FILE* stream, const std::string& bytes) {
  return std::fwrite(bytes.data(), 1, bytes.size(), stream) == bytes.size() &&
         std::fflush(stream) == 0;
}

bool isTerminalForDiagnostics() {
  return ::isatty(STDERR_FILENO) == 1;
}

void prepareStandardStreams() {
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) fillWithRefusal(stream);
}

}  // namespace quiver_tool
