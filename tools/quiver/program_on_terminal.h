// The built program on a terminal of its own, on which a test types and reads. POSIX only.

#pragma once

#include <chrono>
#include <csignal>
#include <poll.h>
#include <pty.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>

namespace quiver_tool {

inline constexpr std::chrono::seconds kPatience(60);

class ProgramOnTerminal final {
 public:
  explicit ProgramOnTerminal(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), QUIVER_PROGRAM);
    std::vector<char*> words;
    for (std::string& argument : arguments) words.push_back(argument.data());
    words.push_back(nullptr);
    m_process = ::forkpty(&m_terminal, nullptr, nullptr, nullptr);
    if (m_process == 0) {
      ::execv(QUIVER_PROGRAM, words.data());
      ::_exit(127);
    }
  }

  ~ProgramOnTerminal() {
    if (m_process > 0 && !m_hasEnded) {
      ::kill(m_process, SIGKILL);
      ::waitpid(m_process, nullptr, 0);
    }
    ::close(m_terminal);
  }

  ProgramOnTerminal(const ProgramOnTerminal&) = delete;
  ProgramOnTerminal& operator=(const ProgramOnTerminal&) = delete;

  void type(char key) { EXPECT_EQ(::write(m_terminal, &key, 1), 1); }

  /// Reads until the text has been shown. Returns false when the program ended before.
  bool waitFor(const std::string& text) {
    while (m_shown.find(text) == std::string::npos) {
      if (!readMore())
        return false;
    }
    return true;
  }

  /// Returns the exit status, -1 when a signal ended the program.
  int waitForEnd() {
    while (readMore()) {
    }
    int status = 0;
    ::waitpid(m_process, &status, 0);
    m_hasEnded = true;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  const std::string& shown() const { return m_shown; }

 private:
  bool readMore() {
    pollfd wait = {m_terminal, POLLIN, 0};
    const auto limit = std::chrono::milliseconds(kPatience).count();
    if (::poll(&wait, 1, static_cast<int>(limit)) <= 0)
      return false;
    char buffer[4096];
    const ::ssize_t count = ::read(m_terminal, buffer, sizeof buffer);
    if (count <= 0)
      return false;
    m_shown.append(buffer, static_cast<std::size_t>(count));
    return true;
  }

  ::pid_t m_process = -1;
  int m_terminal = -1;
  bool m_hasEnded = false;
  std::string m_shown;
};

}  // namespace quiver_tool
