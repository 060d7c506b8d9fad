// The elements of the symbol path.

#include "os/symbol_path.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "os/directory_recorder.h"
#include "support/scoped_environment.h"

namespace QV_2_9::internal {
namespace {

using quiver_test::DirectoryRecorder;
using quiver_test::ScopedVariable;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

TEST(SymbolPathElements, AreEmptyWithoutTheVariable) {
  ScopedVariable variable("_NT_SYMBOL_PATH");
  EXPECT_THAT(symbolPathElements(), IsEmpty());
  variable.set("");
  EXPECT_THAT(symbolPathElements(), IsEmpty());
}

TEST(SymbolPathElements, ComeInOrderServersIncluded) {
  ScopedVariable variable("_NT_SYMBOL_PATH", R"(c:\sym;srv*c:\cache;;/sym)");
  EXPECT_THAT(symbolPathElements(), ElementsAre(LR"(c:\sym)", LR"(srv*c:\cache)", L"", L"/sym"));
}

TEST(AddSymbolPathElements, LeavesServersToTheFilterOfTheScan) {
  ScopedVariable variable("_NT_SYMBOL_PATH", R"(c:\sym;SRV*c:\cache)");
  DirectoryRecorder dirs;
  addSymbolPathElements(dirs);
  EXPECT_THAT(dirs.added(),
              ElementsAre(Pair(LR"(c:\sym)", false), Pair(LR"(SRV*c:\cache)", false)));
}

}  // namespace
}  // namespace QV_2_9::internal
