// The program's standard streams, which the caller may have closed.

#pragma once

#include <string>

namespace quiver_tool {

/// Makes a closed stream fail instead of letting a file that is opened later take its place, and a
/// reader that went away or a limit on the size of files an error instead of the end of the
/// program. Call it first.
void prepareStandardStreams();

/// Writes everything to standard output. Returns an empty text, or why it could not be written.
std::string writeOutput(const std::string& bytes);

/// Writes to standard error; there is nowhere left to complain to.
void writeDiagnostics(const std::string& bytes);

/// Returns true when a person reads standard error as it is written.
bool isTerminalForDiagnostics();

}  // namespace quiver_tool
