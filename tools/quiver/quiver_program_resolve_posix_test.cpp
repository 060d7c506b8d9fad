// `quiver resolve` on a terminal: its progress bar, and Ctrl-C.

#include <filesystem>
#include <iterator>
#include <nlohmann/json.hpp>
#include <string>
#include <sys/resource.h>

#include <gmock/gmock.h>

#include "symsrv/server_process_test_support.h"

#include "program_fixture.h"
#include "program_on_terminal.h"
#include "run_program.h"

namespace quiver_tool {
namespace {

using nlohmann::json;
using symsrv_1_0::internal::ServerProcess;
using testing::HasSubstr;

using ResolvingPosix = Program;

TEST_F(ResolvingPosix, ShowsHowFarItIsAndWipesItOut) {
  const std::string manifest =
      add("m.json",
          json{{"modules", json::array({{{"path", add("app")}}, {{"path", "/qv/lib"}}})}}.dump());
  ProgramOnTerminal program({"resolve", manifest, "--no-servers"});
  EXPECT_EQ(program.waitForEnd(), 1);
  EXPECT_THAT(program.shown(), HasSubstr("[                        ]  0 of 2  "));
  EXPECT_THAT(program.shown(), HasSubstr(" \rbinaries"));
}

TEST_F(ResolvingPosix, KeepsTheFormerReportWhenTheNewOneDoesNotFit) {
  const std::string manifest = add("m.json", R"({"modules": []})");
  const std::string report = add("r.html", "before");
  rlimit former{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &former), 0);
  const rlimit small{10'000, former.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
  const RunResult run = runProgram({"resolve", manifest, "--report", report});
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &former), 0);
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.err, "quiver: cannot write the report " + report + ": File too large\n");
  EXPECT_EQ(std::filesystem::file_size(report), 6u);
  const std::filesystem::directory_iterator entries(path("."));
  EXPECT_EQ(std::distance(begin(entries), end(entries)), 2) << "something is left behind";
}

TEST_F(ResolvingPosix, GivesADownloadUpAndReportsWhatWasDone) {
  ServerProcess server({"python3", QUIVER_LOOPBACK_SERVER, QUIVER_REAL_FILES});
  const std::string port = server.readLine();
  const json module = {{"path", QUIVER_REAL_FILES "/tiny64.exe"},
                       {"symbol_file", {{"path", "C:\\ci\\tiny64.pdb"}}},
                       {"sources", json::array({{{"path", "/qv/a.c"}}, {{"path", "/qv/b.c"}}})}};
  const std::string manifest = add("m.json", json{{"modules", json::array({module})}}.dump());
  ProgramOnTerminal program(
      {"resolve",
       manifest,
       "--report",
       path("r.html"),
       "--symbol-path",
       "srv*" + path("cache") + "*http://127.0.0.1:" + port + "/~test/hang-in-body"});
  ASSERT_TRUE(program.waitFor("downloading")) << program.shown();
  program.type('\x03');
  EXPECT_EQ(program.waitForEnd(), 130) << program.shown();
  EXPECT_THAT(program.shown(), HasSubstr("quiver: stopped; the remaining files were not tried"));
  EXPECT_THAT(program.shown(), HasSubstr("binaries                    1 of 1  found"));
  EXPECT_THAT(program.shown(), HasSubstr("sources                     0 of 2  found"));
  EXPECT_THAT(program.shown(), HasSubstr("  stopped before            2       not tried"));
  EXPECT_TRUE(std::filesystem::exists(path("r.html")));
}

}  // namespace
}  // namespace quiver_tool
