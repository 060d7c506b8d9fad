// `quiver record` as a user runs it, on what the system's compilers make.

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <string>

#include <gmock/gmock.h>

#include "program_fixture.h"
#include "run_program.h"

namespace quiver_tool {
namespace {

using nlohmann::json;
using testing::HasSubstr;

class ProgramRecordingPosix : public Program {
 protected:
  ProgramRecordingPosix() { add("a.c", "int main() { return 0; }\n"); }

  /// Runs a command of the shell inside the tree.
  void make(const std::string& command) const {
    ASSERT_EQ(std::system(("cd '" + path(".") + "' && " + command).c_str()), 0) << command;
  }
  RunResult record(const std::string& binary) const {
    return runProgram({"record", path(binary), "-o", path("m.json")});
  }
  json module() const {
    std::ifstream file(path("m.json"), std::ios::binary);
    return json::parse(file).at("modules").at(0);
  }
};

TEST_F(ProgramRecordingPosix, ListsSourcesOfEveryVersion) {
  for (const char* compiler :
       {"clang -gdwarf-5", "clang -gdwarf-4", "gcc -gdwarf-5", "gcc -g -gz"}) {
    make(std::string(compiler) + " a.c -o app");
    const RunResult run = record("app");
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.err, "") << compiler;
    const json recorded = module();
    EXPECT_EQ(recorded.at("path"), path("app"));
    ASSERT_EQ(recorded.at("sources").size(), 1u) << compiler;
    EXPECT_EQ(recorded.at("sources")[0].at("path"), path("a.c"));
    EXPECT_EQ(recorded.at("sources")[0].at("size"), 25);
  }
}

TEST_F(ProgramRecordingPosix, KeepsAbsoluteNamesOfWindows) {
  make("gcc -g -ffile-prefix-map=\"$PWD\"='C:\\ci\\work' \"$PWD/a.c\" -o app");
  EXPECT_EQ(record("app").status, 0);
  ASSERT_EQ(module().at("sources").size(), 1u);
  EXPECT_EQ(module().at("sources")[0].at("path"), "C:\\ci\\work/a.c");
}

TEST_F(ProgramRecordingPosix, TakesTheMd5OfTheContentThatWasCompiled) {
  make("clang -gdwarf-5 a.c -o app");
  record("app");
  const json before = module().at("sources").at(0);
  add("a.c", "int changed;\n");
  record("app");
  const json after = module().at("sources").at(0);
  EXPECT_EQ(after.at("md5"), before.at("md5"));
  EXPECT_FALSE(after.contains("size")) << "the file of today is another one";
}

TEST_F(ProgramRecordingPosix, SaysPlainlyThatThereIsNoDebugData) {
  make("gcc -s a.c -o app");
  const RunResult run = record("app");
  EXPECT_EQ(run.status, 0);
  EXPECT_THAT(run.err, HasSubstr("it has no debug data; no sources were listed"));
  EXPECT_TRUE(module().at("sources").empty());
}

TEST_F(ProgramRecordingPosix, FollowsALinkToADebugFile) {
  make(
      "gcc -g a.c -o app && objcopy --only-keep-debug app app.debug && "
      "objcopy --strip-debug --add-gnu-debuglink=app.debug app");
  EXPECT_EQ(record("app").status, 0);
  EXPECT_EQ(module().at("symbol_file").at("path"), path("app.debug"));
  EXPECT_EQ(module().at("sources").size(), 1u);
}

TEST_F(ProgramRecordingPosix, WaitsForNoPipeInThePlaceOfADebugFile) {
  make(
      "gcc -g a.c -o app && cp app app.debug && mkdir .debug && "
      "objcopy --strip-debug --add-gnu-debuglink=app.debug app && rm app.debug");
  for (const char* place : {"app.debug", ".debug/app.debug"}) {
    make(std::string("mkfifo ") + place);
    const RunResult run = record("app");
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_THAT(run.err, HasSubstr("since " + path(place) + " is no regular file"));
    EXPECT_TRUE(module().at("sources").empty());
    make(std::string("rm ") + place);
  }
}

TEST_F(ProgramRecordingPosix, WaitsForNoPipeInThePlaceOfASource) {
  make("gcc -g a.c -o app && rm a.c && mkfifo a.c");
  EXPECT_EQ(record("app").status, 0);
  EXPECT_EQ(module().at("sources").at(0), json({{"path", path("a.c")}}));
  EXPECT_EQ(record("a.c").status, 1);
}

TEST_F(ProgramRecordingPosix, WritesOverNothingThatItRecords) {
  make("gcc -g a.c -o app");
  for (const char* output : {"app", "./app", "a.c"}) {
    const RunResult run = runProgram({"record", path("app"), "-o", path(output)});
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.out, "");
    EXPECT_THAT(run.err,
                HasSubstr("quiver: cannot write the manifest " + path(output) + ": it is "));
  }
  EXPECT_EQ(record("app").status, 0);
}

TEST_F(ProgramRecordingPosix, SaysBeforeItReadsThatTheManifestCannotBeWritten) {
  make("gcc -g a.c -o app");
  const RunResult run = runProgram({"record", path("app"), "-o", path(".")});
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.err, "quiver: cannot write the manifest " + path(".") + ": it is a directory\n");
}

TEST_F(ProgramRecordingPosix, SurvivesDamagedFiles) {
  make("clang -gdwarf-5 a.c -o app");
  std::ifstream file(path("app"), std::ios::binary);
  const std::string whole{std::istreambuf_iterator<char>(file), {}};
  for (std::size_t i = 1; i < 20; ++i) {
    std::string damaged = whole;
    for (std::size_t at = i * 37; at < damaged.size(); at += 401)
      damaged[at] = static_cast<char>(~damaged[at]);
    damaged.replace(0, 16, whole, 0, 16);
    add("damaged", damaged);
    EXPECT_THAT(record("damaged").status, testing::AnyOf(0, 1));
    add("cut", whole.substr(0, whole.size() * i / 20));
    EXPECT_THAT(record("cut").status, testing::AnyOf(0, 1));
  }
}

TEST_F(ProgramRecordingPosix, RefusesWhatIsNoBinary) {
  const RunResult run = record("a.c");
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.err, HasSubstr("it is no binary that can be read"));
  add("m.json", "before");
  const RunResult none = record("none");
  EXPECT_EQ(none.status, 1);
  EXPECT_EQ(none.out, "");
  EXPECT_EQ(none.err,
            "quiver: " + path("none") + ": no such file\nquiver: " + path("m.json") +
                ": not written, since no binary could be recorded\n");
  EXPECT_EQ(runProgram({"record", path("a.c")}).status, 2);
}

}  // namespace
}  // namespace quiver_tool
