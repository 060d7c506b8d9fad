// What the process is told of its surroundings.

#include <filesystem>
#include <pwd.h>
#include <string>
#include <sys/utsname.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "paku/environment.h"
#include "paku/text_encoding.h"

#include "support/scoped_directory.h"
#include "support/scoped_environment.h"
#include "support/temp_tree.h"

namespace PAKU_3_1 {
namespace {

using quiver_test::ScopedVariable;

TEST(Environment, ReadsAVariable) {
  ScopedVariable variable("QUIVER_TEST_VARIABLE", "a;b");
  EXPECT_EQ(environmentValue(L"QUIVER_TEST_VARIABLE"), L"a;b");
  variable.set("\xC3\xA9\xFF");
  EXPECT_EQ(environmentValue(L"QUIVER_TEST_VARIABLE"), (std::wstring{0xE9, 0xDCFF}));
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

TEST(Environment, DoesNotAskVariablesForTheUser) {
  const passwd* entry = getpwuid(geteuid());
  ASSERT_NE(entry, nullptr);
  const std::wstring expected = decode(entry->pw_name);
  const ScopedVariable user("USER", "somebody else");
  const ScopedVariable login("LOGNAME", "somebody else");
  EXPECT_EQ(currentUserName(), expected);
}

TEST(Environment, KnowsTheCurrentDirectory) {
  quiver_test::TempTree tree;
  const std::string deep = std::string(200, 'a') + "/" + std::string(200, 'b') + "/" +
                           std::string(200, 'c') + "/" + std::string(200, 'd') + "/" +
                           std::string(200, 'e') + "/" + std::string(200, 'f');
  const std::wstring path = tree.addDirectory(deep);
  const quiver_test::ScopedDirectory here(path);
  EXPECT_EQ(currentDirectory(), path);
}

TEST(Environment, KnowsTheSystemsRelease) {
  utsname names{};
  ASSERT_EQ(uname(&names), 0);
  EXPECT_EQ(systemRelease(), decode(names.release));
  EXPECT_NE(systemRelease(), L"");
}

}  // namespace
}  // namespace PAKU_3_1
