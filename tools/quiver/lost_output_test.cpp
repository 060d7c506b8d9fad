// Output that cannot be written: a result that nobody sees is no success.

#include <ostream>
#include <string>

#include <gtest/gtest.h>

#include "run_program.h"
#include "support/temp_tree.h"
#include "text_encoding.h"

namespace quiver_tool {
namespace {

using quiver_test::TempTree;

struct LostOutputRow {
  const char* name;
  OutputTo output;
  const char* reason;
};

void PrintTo(const LostOutputRow& row, std::ostream* out) {
  *out << row.name;
}

class LostOutput : public testing::TestWithParam<LostOutputRow> {};

TEST_P(LostOutput, IsAFailureWithAMessage) {
  TempTree tree;
  tree.addFile("a.c");
  RunSettings settings;
  settings.output = GetParam().output;
  const RunResult run = runProgram({"find", "src", "a.c", "-d", toBytes(tree.root())}, settings);
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.err, std::string("quiver: cannot write the result: ") + GetParam().reason + "\n");
}

INSTANTIATE_TEST_SUITE_P(
    Program,
    LostOutput,
    testing::Values(LostOutputRow{"ClosedPipe", OutputTo::ClosedPipe, "Broken pipe"},
                    LostOutputRow{"ClosedStream", OutputTo::ClosedStream, "Bad file descriptor"}),
    [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace quiver_tool
