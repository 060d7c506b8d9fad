// Runs the built program as a user does, for tests.

#pragma once

#include <string>
#include <vector>

namespace quiver_tool {

/// What stands behind the program's standard output.
enum class OutputTo {
  Capture,       ///< A file that is read back.
  FullDevice,    ///< A device that refuses every write.
  ClosedPipe,    ///< A pipe whose reader has gone.
  ClosedStream,  ///< Nothing: the stream is closed.
};

struct RunSettings {
  std::string directory;                 ///< Current directory; empty: the test's own.
  std::vector<std::string> environment;  ///< NAME=value, added to an environment without PATH.
  OutputTo output = OutputTo::Capture;
};

struct RunResult {
  int status = -1;  ///< Exit status; -1 when the program was ended by a signal.
  std::string out;
  std::string err;
};

/// Throws when the program cannot be started.
RunResult runProgram(const std::vector<std::string>& arguments, const RunSettings& settings = {});

}  // namespace quiver_tool
