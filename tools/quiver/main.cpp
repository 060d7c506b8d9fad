// quiver: finds the files that an analysis result names, and keeps copies of them. See quiver(1).

#include <exception>
#include <string>
#include <vector>

#include "arguments.h"
#include "command_line.h"
#include "standard_streams.h"

namespace {

using namespace quiver_tool;

Answer run(const std::vector<std::string>& arguments) {
  std::vector<const char*> words;
  for (const std::string& argument : arguments) words.push_back(argument.c_str());
  return parseCommandLine(static_cast<int>(words.size()), words.data())();
}

int print(const Answer& answer) {
  writeDiagnostics(answer.err);
  const std::string complaint = writeOutput(answer.out);
  if (complaint.empty())
    return answer.status;
  writeDiagnostics("quiver: cannot write the result: " + complaint + "\n");
  return kExitFailure;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    prepareStandardStreams();
    return print(run(commandLineArguments(argc, argv)));
  } catch (const std::exception& error) {
    writeDiagnostics(std::string("quiver: ") + error.what() + "\n");
    return kExitFailure;
  }
}
