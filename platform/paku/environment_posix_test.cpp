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

TEST(EnvironmentPosix, KeepsBytesThatAreNoText) {
  const ScopedVariable variable("QUIVER_TEST_VARIABLE", "\xC3\xA9\xFF");
  EXPECT_EQ(environmentValue(L"QUIVER_TEST_VARIABLE"), (std::wstring{0xE9, 0xDCFF}));
}

TEST(EnvironmentPosix, DoesNotAskVariablesForTheUser) {
  const passwd* entry = getpwuid(geteuid());
  ASSERT_NE(entry, nullptr);
  const std::wstring expected = decode(entry->pw_name);
  const ScopedVariable user("USER", "somebody else");
  const ScopedVariable login("LOGNAME", "somebody else");
  EXPECT_EQ(currentUserName(), expected);
}

TEST(EnvironmentPosix, KnowsACurrentDirectoryWithALongName) {
  quiver_test::TempTree tree;
  const std::string deep = std::string(200, 'a') + "/" + std::string(200, 'b') + "/" +
                           std::string(200, 'c') + "/" + std::string(200, 'd') + "/" +
                           std::string(200, 'e') + "/" + std::string(200, 'f');
  const std::wstring path = tree.addDirectory(deep);
  const quiver_test::ScopedDirectory here(path);
  EXPECT_EQ(currentDirectory(), path);
}

TEST(EnvironmentPosix, KnowsTheSystemsRelease) {
  utsname names{};
  ASSERT_EQ(uname(&names), 0);
  EXPECT_EQ(systemRelease(), decode(names.release));
  EXPECT_NE(systemRelease(), L"");
}

}  // namespace
}  // namespace PAKU_3_1
