// What the process is told of its surroundings.

#include "paku/environment.h"

#include <string>

#include <gtest/gtest.h>

#include "support/scoped_directory.h"
#include "support/scoped_environment.h"
#include "support/temp_tree.h"

namespace PAKU_3_1 {
namespace {

using quiver_test::ScopedVariable;

TEST(Environment, ReadsAVariable) {
  ScopedVariable variable("QUIVER_TEST_VARIABLE", "a;b");
  EXPECT_EQ(environmentValue(L"QUIVER_TEST_VARIABLE"), L"a;b");
  variable.set(L"\u00E9\U0001F600");
  EXPECT_EQ(environmentValue(L"QUIVER_TEST_VARIABLE"), L"\u00E9\U0001F600");
  variable.set(std::string(5000, 'x'));
  EXPECT_EQ(environmentValue(L"QUIVER_TEST_VARIABLE"), std::wstring(5000, L'x'));
  variable.set("");
  EXPECT_EQ(environmentValue(L"QUIVER_TEST_VARIABLE"), L"");
  variable.unset();
  EXPECT_EQ(environmentValue(L"QUIVER_TEST_VARIABLE"), L"");
}

TEST(Environment, HasNoVariableWithoutAName) {
  EXPECT_EQ(environmentValue(nullptr), L"");
  EXPECT_EQ(environmentValue(L""), L"");
  EXPECT_EQ(environmentValue(std::wstring{wchar_t{0xD800}}.c_str()), L"");
}

TEST(Environment, KnowsTheUser) {
  EXPECT_NE(currentUserName(), L"");
  EXPECT_EQ(currentUserName(), currentUserName());
}

TEST(Environment, KnowsTheCurrentDirectory) {
  quiver_test::TempTree tree;
  const std::wstring path = tree.addDirectory(L"sub/\u00E9\U0001F600");
  const quiver_test::ScopedDirectory here(path);
  EXPECT_EQ(currentDirectory(), path);
}

}  // namespace
}  // namespace PAKU_3_1
