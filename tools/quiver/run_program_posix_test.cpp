// The runner behind run_program.h: streams go to files, so that no amount of output can block.

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <spawn.h>
#include <stdexcept>
#include <string_view>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

#include "run_program.h"

extern char** environ;

namespace quiver_tool {
namespace {

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

File temporaryFile() {
  File file(std::tmpfile());
  if (!file)
    throw std::runtime_error("no temporary file");
  return file;
}

std::string contentOf(std::FILE& file) {
  std::string content;
  char buffer[4096];
  std::rewind(&file);
  while (const std::size_t size = std::fread(buffer, 1, sizeof buffer, &file))
    content.append(buffer, size);
  return content;
}

bool isSanitizerSetting(std::string_view variable) {
  return variable.find("SAN_OPTIONS=") != std::string_view::npos;
}

std::vector<std::string> programEnvironment(const RunSettings& settings) {
  std::vector<std::string> variables = settings.environment;
  for (char** variable = environ; *variable; ++variable) {
    if (isSanitizerSetting(*variable))
      variables.push_back(*variable);
  }
  return variables;
}

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

void check(int error, const char* what) {
  if (error != 0)
    throw std::system_error(error, std::generic_category(), what);
}

/// What the program's streams are made into between its birth and its first instruction.
class StreamActions final {
 public:
  StreamActions() { check(::posix_spawn_file_actions_init(&m_actions), "file actions"); }
  ~StreamActions() { ::posix_spawn_file_actions_destroy(&m_actions); }

  StreamActions(const StreamActions&) = delete;
  StreamActions& operator=(const StreamActions&) = delete;

  void enter(const std::string& directory) {
    if (!directory.empty())
      check(::posix_spawn_file_actions_addchdir_np(&m_actions, directory.c_str()), "directory");
  }
  void replace(int stream, int descriptor) {
    check(::posix_spawn_file_actions_adddup2(&m_actions, descriptor, stream), "stream");
  }
  void close(int stream) {
    check(::posix_spawn_file_actions_addclose(&m_actions, stream), "close");
  }
  const posix_spawn_file_actions_t* get() const { return &m_actions; }

 private:
  posix_spawn_file_actions_t m_actions;
};

File pipeWithoutReader() {
  int ends[2];
  check(::pipe2(ends, O_CLOEXEC) == 0 ? 0 : errno, "pipe");
  ::close(ends[0]);
  return File(::fdopen(ends[1], "w"));
}

// The file behind standard output; empty for a closed stream.
File outputFile(OutputTo output) {
  switch (output) {
    case OutputTo::Capture:
      return temporaryFile();
    case OutputTo::FullDevice:
      return File(std::fopen("/dev/full", "w"));
    case OutputTo::ClosedPipe:
      return pipeWithoutReader();
    case OutputTo::ClosedStream:
      return nullptr;
  }
  return nullptr;
}

int waitFor(::pid_t child) {
  int status = 0;
  while (::waitpid(child, &status, 0) == -1) {
    if (errno != EINTR)
      throw std::system_error(errno, std::generic_category(), "wait");
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace

RunResult runProgram(const std::vector<std::string>& arguments, const RunSettings& settings) {
  const File out = outputFile(settings.output);
  const File err = temporaryFile();
  StreamActions actions;
  actions.enter(settings.directory);
  actions.replace(STDERR_FILENO, ::fileno(err.get()));
  if (out)
    actions.replace(STDOUT_FILENO, ::fileno(out.get()));
  else
    actions.close(STDOUT_FILENO);

  std::vector<std::string> words{QUIVER_PROGRAM};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<std::string> variables = programEnvironment(settings);
  ::pid_t child = -1;
  check(::posix_spawn(&child,
                      QUIVER_PROGRAM,
                      actions.get(),
                      nullptr,
                      pointersTo(words).data(),
                      pointersTo(variables).data()),
        QUIVER_PROGRAM);
  RunResult result;
  result.status = waitFor(child);
  if (settings.output == OutputTo::Capture)
    result.out = contentOf(*out);
  result.err = contentOf(*err);
  return result;
}

}  // namespace quiver_tool
