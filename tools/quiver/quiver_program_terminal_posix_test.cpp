// The built program on a terminal: progress of a download, and Ctrl-C.

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>

#include "symsrv/server_process_test_support.h"

#include "program_fixture.h"
#include "program_on_terminal.h"

namespace quiver_tool {
namespace {

using symsrv_1_0::internal::ServerProcess;
using testing::HasSubstr;

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
