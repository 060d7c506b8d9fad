// The program on Windows: names that no code page holds, drives, devices.

#include <algorithm>
#include <string>

#include <gmock/gmock.h>

#include "program_fixture.h"
#include "run_program.h"
#include "text_encoding.h"

namespace quiver_tool {
namespace {

class ProgramWindows : public Program {};

// An e with an accent, two CJK characters, and one beyond the 16 bits of a wide character.
TEST_F(ProgramWindows, TakesAndPrintsNamesOfEveryScript) {
  const std::string name = "\xC3\xA9-\xE4\xB8\xAD\xE6\x96\x87-\xF0\x9F\x98\x80";
  const std::string file = add(name + "/" + name + ".c");
  const RunResult run =
      runProgram({"find", "src", "C:\\ci\\" + name + ".c", "-d", path("") + ",recursive"});
  EXPECT_EQ(run.out, file + "\n");
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.status, 0);
  const RunResult missing = runProgram({"find", "src", "no-" + name, "-d", path(name)});
  EXPECT_THAT(missing.err, testing::HasSubstr("'no-" + name + "'"));
}

TEST_F(ProgramWindows, KeepsHalvesOfPairs) {
  const std::string name = "no\xED\xA0\x80-\xED\xB2\x80.c";
  const RunResult run = runProgram({"find", "src", name, "-d", path("")});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.err, testing::HasSubstr("'" + name + "'"));
}

TEST_F(ProgramWindows, FindsABinaryThatWasRecordedByItsDevice) {
  const std::string file = add("d/qv_app.dll");
  const std::string recorded = "\\??\\" + file;
  EXPECT_EQ(runProgram({"find", "bin", recorded}).out, file + "\n");
}

TEST_F(ProgramWindows, TakesSlashesAndAnyLetterCase) {
  add("Sub/A.c");
  std::string directory = path("sub");
  std::ranges::replace(directory, '\\', '/');
  EXPECT_EQ(runProgram({"find", "src", "x/a.C", "-d", directory}).out, path("sub") + "\\A.c\n");
}

TEST_F(ProgramWindows, DoesNotTakeADeviceForAFile) {
  const RunResult run = runProgram({"find", "src", "nul", "-d", path("")});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, "");
}

TEST_F(ProgramWindows, EndsLinesWithALineFeedAlone) {
  const RunResult run = runProgram({"--help"});
  EXPECT_EQ(run.out.find('\r'), std::string::npos);
  EXPECT_NE(run.out.find('\n'), std::string::npos);
}

}  // namespace
}  // namespace quiver_tool
