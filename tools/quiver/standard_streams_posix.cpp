#include <csignal>
#include <fcntl.h>
#include <unistd.h>

#include "standard_streams.h"

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

void prepareStandardStreams() {
  std::signal(SIGPIPE, SIG_IGN);
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) fillWithRefusal(stream);
}

}  // namespace quiver_tool
