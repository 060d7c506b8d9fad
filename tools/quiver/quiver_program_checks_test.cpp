// Source files that are checked by time, size or age.

#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "program_fixture.h"
#include "run_program.h"

namespace quiver_tool {
namespace {

using testing::HasSubstr;

class ProgramWithChecks : public Program {
 protected:
  ProgramWithChecks() {
    add("old/a.c", "12345");
    add("new/a.c", "1234567");
    m_tree.setModificationTime("old/a.c", 1000, 900000000);
    m_tree.setModificationTime("new/a.c", 2000);
  }

  RunResult find(const std::vector<std::string>& check) const {
    std::vector<std::string> arguments{
        "find", "src", "/x/a.c", "-d", path("new"), "-d", path("old"), "-v"};
    arguments.insert(arguments.end(), check.begin(), check.end());
    return runProgram(arguments);
  }
};

TEST_F(ProgramWithChecks, TakesTheFileWithTheModificationTime) {
  const RunResult run = find({"--mtime", "1000"});
  EXPECT_EQ(run.out, path("old/a.c") + "\n");
  EXPECT_EQ(run.err,
            "quiver: " + path("old/a.c") +
                ": found (step 6, low-priority directories; confidence 0, confirmed)\n"
                "quiver: " +
                path("new/a.c") +
                ": rejected, it has another modification time or size (step 6, low-priority "
                "directories; code 1, the source differs %ModificationTimeOrSizeMismatch)\n");
  EXPECT_EQ(find({"--mtime", "1001"}).status, 1);
}

TEST_F(ProgramWithChecks, TakesTheModificationTimeOfAFile) {
  add("reference");
  m_tree.setModificationTime("reference", 1000, 100000000);
  EXPECT_EQ(find({"--mtime", path("reference")}).out, path("old/a.c") + "\n");
}

TEST_F(ProgramWithChecks, TakesTheFileWithTheSize) {
  EXPECT_EQ(find({"--size", "5"}).out, path("old/a.c") + "\n");
  EXPECT_EQ(find({"--size", "7"}).out, path("new/a.c") + "\n");
  EXPECT_EQ(find({"--size", "6"}).status, 1);
}

TEST_F(ProgramWithChecks, ComparesTimeAndSizeTogether) {
  EXPECT_EQ(find({"--mtime", "1000", "--size", "5"}).out, path("old/a.c") + "\n");
  EXPECT_EQ(find({"--mtime", "1000", "--size", "7"}).status, 1);
}

TEST_F(ProgramWithChecks, TakesSizesThatRecordersWriteAsNegativeNumbers) {
  m_tree.addSparseFile("large/a.c", 3221225472);
  for (const char* size : {"--size=3221225472", "--size=-1073741824"}) {
    EXPECT_EQ(runProgram({"find", "src", "a.c", "-d", path("large"), size}).out,
              path("large/a.c") + "\n");
  }
}

TEST_F(ProgramWithChecks, RejectsFilesThatAreNewerThanTheReference) {
  add("reference");
  m_tree.setModificationTime("reference", 1999);
  const RunResult run = find({"--not-newer-than", path("reference")});
  EXPECT_EQ(run.out, path("old/a.c") + "\n");
  EXPECT_THAT(run.err, HasSubstr("rejected, it is newer than the reference file"));
  m_tree.setModificationTime("reference", 2000);
  EXPECT_EQ(find({"--not-newer-than", path("reference")}).out, path("new/a.c") + "\n");
}

}  // namespace
}  // namespace quiver_tool
