// The built program on a terminal: progress of a download, and Ctrl-C.

#include <chrono>
#include <csignal>
#include <filesystem>
#include <memory>
#include <poll.h>
#include <pty.h>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include <gmock/gmock.h>

#include "symsrv/server_process_test_support.h"

#include "program_fixture.h"

namespace quiver_tool {
namespace {

using symsrv_1_0::internal::ServerProcess;
using testing::HasSubstr;

constexpr std::chrono::seconds kPatience(60);

/// The program with a terminal of its own, on which the test types and reads.
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

class TerminalPosix : public Program {
 protected:
  std::vector<std::string> find(const std::string& way) const {
    return {"find",
            "sym",
            "tiny64.pdb",
            "--binary",
            QUIVER_REAL_FILES "/tiny64.exe",
            "--symbol-path",
            "srv*" + path("cache") + "*http://127.0.0.1:" + m_port + "/~test/" + way};
  }

  /// Files for tiny64.pdb, complete or not.
  int filesInCache() const {
    int count = 0;
    std::error_code none;
    const std::string folder = path("cache/tiny64.pdb");
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder, none))
      count += entry.is_regular_file() ? 1 : 0;
    return count;
  }

  ServerProcess m_server{{"python3", QUIVER_LOOPBACK_SERVER, QUIVER_REAL_FILES}};
  const std::string m_port = m_server.readLine();
};

TEST_F(TerminalPosix, ShowsHowMuchHasArrivedAndWipesItOut) {
  ProgramOnTerminal program(find("good"));
  EXPECT_EQ(program.waitForEnd(), 0) << program.shown();
  EXPECT_THAT(program.shown(), HasSubstr("downloading  0.0 of 0.1 MiB  0 %"));
  EXPECT_THAT(program.shown(), HasSubstr("\r" + path("cache")));
  EXPECT_EQ(filesInCache(), 1);
}

TEST_F(TerminalPosix, StopsAtOnceWhenControlCIsTyped) {
  ProgramOnTerminal program(find("hang-in-body"));
  ASSERT_TRUE(program.waitFor("downloading")) << program.shown();
  const auto start = std::chrono::steady_clock::now();
  program.type('\x03');
  EXPECT_EQ(program.waitForEnd(), 130) << program.shown();
  const auto took = std::chrono::steady_clock::now() - start;
  EXPECT_LT(took, std::chrono::seconds(15)) << "the server says nothing for 30 seconds";
  EXPECT_THAT(program.shown(), HasSubstr("quiver: stopped while a symbol file was downloaded"));
  EXPECT_EQ(filesInCache(), 0);
}

TEST_F(TerminalPosix, StopsWhileTheServerSaysNothingAtAll) {
  ProgramOnTerminal program(find("hang"));
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  program.type('\x03');
  EXPECT_NE(program.waitForEnd(), 0);
  EXPECT_EQ(filesInCache(), 0);
}

}  // namespace
}  // namespace quiver_tool
