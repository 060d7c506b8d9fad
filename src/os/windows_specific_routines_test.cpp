// Recorded device paths on a machine that is made up, and the directories of Windows from variables
// that the tests set.

#include "os/windows_specific_routines.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "os/directory_recorder.h"
#include "os/fake_windows_system.h"
#include "support/scoped_environment.h"

namespace QV_2_9 {
namespace {

using quiver_test::DirectoryRecorder;
using quiver_test::FakeDrive;
using quiver_test::FakeWindowsSystem;
using quiver_test::ScopedVariable;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

using Texts = std::vector<std::wstring>;

/// Notes the candidates and accepts one of them.
class Results final : public ISearchResultsContainer {
 public:
  explicit Results(const wchar_t* accepted = L"(none)") : m_accepted(accepted) {}

  bool addFoundFile(const wchar_t* path, std::uint32_t value, bool& stop) override {
    stop = false;
    EXPECT_EQ(value, 3u) << path;
    offered.emplace_back(path);
    return m_accepted == path;
  }

  Texts offered;

 private:
  std::wstring m_accepted;
};

const std::vector<FakeDrive> kUsual = {{L"A:\\", 2, L"\\Device\\Floppy0"},
                                       {L"C:\\", 3, L"\\Device\\HarddiskVolume2"},
                                       {L"D:\\", 4, L"\\Device\\HarddiskVolume7"}};

Texts offeredFor(const wchar_t* name, const std::vector<FakeDrive>& drives = kUsual) {
  FakeWindowsSystem system(drives);
  WindowsSpecificRoutines routines(system);
  Results results;
  EXPECT_FALSE(routines.findByAbsoluteName(name, results, 0));
  return results.offered;
}

TEST(FindByAbsoluteName, TakesTheObjectPrefixOff) {
  EXPECT_THAT(offeredFor(L"\\??\\C:\\dir\\f.dll"), ElementsAre(L"C:\\dir\\f.dll"));
}

TEST(FindByAbsoluteName, GoesOnBehindTheObjectPrefix) {
  EXPECT_THAT(offeredFor(L"\\??\\\\SystemRoot\\f.sys"),
              ElementsAre(L"\\SystemRoot\\f.sys", L"f.sys"));
}

TEST(FindByAbsoluteName, LeavesARelativeNameAlone) {
  EXPECT_THAT(offeredFor(L"f.dll"), IsEmpty());
  EXPECT_THAT(offeredFor(L"C:\\f.dll"), IsEmpty());
  EXPECT_THAT(offeredFor(L""), IsEmpty());
  EXPECT_THAT(offeredFor(nullptr), IsEmpty());
}

// Intended: the directory that Windows is installed in is not put in front.
TEST(FindByAbsoluteName, MakesASystemRootNameRelativeInAnyLetterCase) {
  EXPECT_THAT(offeredFor(L"\\systemroot\\System32\\f.sys"), ElementsAre(L"System32\\f.sys"));
  EXPECT_THAT(offeredFor(L"\\SystemRoot\\"), ElementsAre(L""));
}

TEST(FindByAbsoluteName, MakesAShareOfARedirectorName) {
  const Texts offered = offeredFor(L"\\device\\LANMANREDIRECTOR\\srv\\share\\f.dll");
  ASSERT_FALSE(offered.empty());
  EXPECT_EQ(offered.front(), L"\\\\srv\\share\\f.dll");
}

// The redirector's name is rooted as well, so the drives follow.
TEST(FindByAbsoluteName, TriesDrivesAfterTheRedirector) {
  EXPECT_THAT(offeredFor(L"\\Device\\LanmanRedirector\\s\\f.dll"),
              ElementsAre(L"\\\\s\\f.dll",
                          L"C:\\Device\\LanmanRedirector\\s\\f.dll",
                          L"D:\\Device\\LanmanRedirector\\s\\f.dll"));
}

TEST(FindByAbsoluteName, TriesARootedNameOnEveryDriveThatIsNotRemovable) {
  EXPECT_THAT(offeredFor(L"\\Windows\\x.dll"),
              ElementsAre(L"C:\\Windows\\x.dll", L"D:\\Windows\\x.dll"));
  EXPECT_THAT(offeredFor(L"/build/x.dll"), ElementsAre(L"C:\\build/x.dll", L"D:\\build/x.dll"));
}

TEST(FindByAbsoluteName, ShortensADeviceNameFromTheFront) {
  EXPECT_THAT(offeredFor(L"\\Device\\HarddiskVolume7\\a\\b\\f.dll"),
              ElementsAre(L"C:\\Device\\HarddiskVolume7\\a\\b\\f.dll",
                          L"D:\\Device\\HarddiskVolume7\\a\\b\\f.dll",
                          L"D:\\a\\b\\f.dll",
                          L"D:\\b\\f.dll",
                          L"D:\\f.dll"));
}

TEST(FindByAbsoluteName, ComparesDeviceNamesIgnoringCase) {
  const Texts offered = offeredFor(L"\\DEVICE\\harddiskvolume2\\f.dll");
  EXPECT_THAT(offered, ::testing::Contains(L"C:\\f.dll"));
}

// Intended: a device name may end in the middle of a component.
TEST(FindByAbsoluteName, TakesALongerDeviceNumberForAMatch) {
  EXPECT_THAT(offeredFor(L"\\Device\\HarddiskVolume12\\a\\f.dll",
                         {{L"C:\\", 3, L"\\Device\\HarddiskVolume1"}}),
              ElementsAre(L"C:\\Device\\HarddiskVolume12\\a\\f.dll",
                          L"C:\\2\\a\\f.dll",
                          L"C:\\a\\f.dll",
                          L"C:\\f.dll"));
}

// Intended: the whole name is shortened on a drive whose device is not known.
TEST(FindByAbsoluteName, TriesTheWholeNameOnADriveWithoutADevice) {
  EXPECT_THAT(offeredFor(L"\\??\\X:\\a\\f.dll", {{L"C:\\", 3, L""}}),
              ElementsAre(L"X:\\a\\f.dll",
                          L"C:\\??\\X:\\a\\f.dll",
                          L"C:\\X:\\a\\f.dll",
                          L"C:\\a\\f.dll",
                          L"C:\\f.dll"));
}

// The prefix that was taken off counts again where devices are compared.
TEST(FindByAbsoluteName, ComparesTheWholeNameWithADevice) {
  EXPECT_THAT(offeredFor(L"\\??\\Volume{1}\\a\\f.dll", {{L"C:\\", 3, L"\\??\\Volume{1}"}}),
              ElementsAre(L"Volume{1}\\a\\f.dll", L"C:\\a\\f.dll", L"C:\\f.dll"));
}

TEST(FindByAbsoluteName, TriesOnDrivesWhatIsLeftOfASystemRootName) {
  EXPECT_THAT(offeredFor(L"\\SystemRoot\\\\x\\f.sys"),
              ElementsAre(L"\\x\\f.sys", L"C:\\x\\f.sys", L"D:\\x\\f.sys"));
}

TEST(FindByAbsoluteName, LooksForTheRedirectorBehindTheObjectPrefix) {
  const Texts offered = offeredFor(L"\\??\\\\Device\\LanmanRedirector\\s\\f.dll");
  ASSERT_GE(offered.size(), 2u);
  EXPECT_EQ(offered[1], L"\\\\s\\f.dll");
}

// The prefixes end with a separator, the redirector does not.
TEST(FindByAbsoluteName, TakesNoPrefixOffThatGoesOn) {
  EXPECT_THAT(offeredFor(L"\\SystemRoots\\f.sys"),
              ElementsAre(L"C:\\SystemRoots\\f.sys", L"D:\\SystemRoots\\f.sys"));
  EXPECT_THAT(offeredFor(L"\\??x\\f.dll"), ElementsAre(L"C:\\??x\\f.dll", L"D:\\??x\\f.dll"));
  EXPECT_EQ(offeredFor(L"\\Device\\LanmanRedirectors\\f.dll").front(), L"\\s\\f.dll");
}

TEST(FindByAbsoluteName, NeverTriesARemovableDrive) {
  for (const wchar_t* name : {L"\\Device\\Floppy0\\a\\f.dll", L"/f.dll", L"\\??\\\\f.dll"})
    for (const std::wstring& offered : offeredFor(name)) EXPECT_NE(offered[0], L'A') << offered;
}

TEST(FindByAbsoluteName, PutsASeparatorInFrontOfASlash) {
  EXPECT_THAT(offeredFor(L"\\Device\\HarddiskVolume7/a/f.dll"),
              ::testing::IsSupersetOf({L"D:\\/a/f.dll", L"D:\\f.dll"}));
}

TEST(FindByAbsoluteName, EndsWithNothingBehindTheDevice) {
  EXPECT_THAT(offeredFor(L"\\Device\\HarddiskVolume7"),
              ElementsAre(L"C:\\Device\\HarddiskVolume7", L"D:\\Device\\HarddiskVolume7"));
  EXPECT_EQ(offeredFor(L"\\Device\\HarddiskVolume7\\a\\").back(), L"D:\\a\\");
}

TEST(FindByAbsoluteName, FinishesADriveBeforeTheNext) {
  EXPECT_THAT(offeredFor(L"\\Device\\HarddiskVolume2\\f.dll"),
              ElementsAre(L"C:\\Device\\HarddiskVolume2\\f.dll",
                          L"C:\\f.dll",
                          L"D:\\Device\\HarddiskVolume2\\f.dll"));
}

TEST(FindByAbsoluteName, ComparesTheObjectPrefixExactly) {
  // The only spelling without letters has no other case; one with another character is no prefix.
  EXPECT_THAT(offeredFor(L"\\?\?/C:\\f.dll"),
              ElementsAre(L"C:\\?\?/C:\\f.dll", L"D:\\?\?/C:\\f.dll"));
}

TEST(FindByAbsoluteName, OffersNothingForAResultThatIsNotFromWindows) {
  FakeWindowsSystem system(kUsual);
  WindowsSpecificRoutines routines(system);
  Results results;
  EXPECT_FALSE(routines.findByAbsoluteName(L"\\??\\C:\\f.dll", results, 2));
  EXPECT_THAT(results.offered, IsEmpty());
  for (const std::int32_t other : {0, 1, 3, -1})
    routines.findByAbsoluteName(L"\\??\\C:\\f.dll", results, other);
  EXPECT_THAT(results.offered, ::testing::SizeIs(4));
}

TEST(FindByAbsoluteName, EndsWithTheDrivesWhenTheyCannotBeListed) {
  FakeWindowsSystem system(kUsual);
  system.failingListing = 1;
  WindowsSpecificRoutines routines(system);
  Results results;
  EXPECT_FALSE(routines.findByAbsoluteName(L"\\??\\\\x\\f.dll", results, 0));
  EXPECT_THAT(results.offered, ElementsAre(L"\\x\\f.dll"));
}

struct Acceptance {
  const wchar_t* name;
  const wchar_t* accepted;
};

class FindByAbsoluteNameAccepted : public ::testing::TestWithParam<Acceptance> {};

TEST_P(FindByAbsoluteNameAccepted, EndsTheOffers) {
  FakeWindowsSystem system(kUsual);
  WindowsSpecificRoutines routines(system);
  Results results(GetParam().accepted);
  EXPECT_TRUE(routines.findByAbsoluteName(GetParam().name, results, 0));
  ASSERT_FALSE(results.offered.empty());
  EXPECT_EQ(results.offered.back(), GetParam().accepted);
}

INSTANTIATE_TEST_SUITE_P(
    All,
    FindByAbsoluteNameAccepted,
    ::testing::Values(Acceptance{L"\\??\\C:\\f.dll", L"C:\\f.dll"},
                      Acceptance{L"\\SystemRoot\\f.sys", L"f.sys"},
                      Acceptance{L"\\Device\\LanmanRedirector\\s\\f.dll", L"\\\\s\\f.dll"},
                      Acceptance{L"\\w\\f.dll", L"C:\\w\\f.dll"},
                      Acceptance{L"\\Device\\HarddiskVolume2\\a\\f.dll", L"C:\\a\\f.dll"}));

TEST(WindowsSpecificRoutines, LeavesTheNameToSearchForAsItIs) {
  FakeWindowsSystem system(kUsual);
  WindowsSpecificRoutines routines(system);
  EXPECT_EQ(routines.mapFileName(L"\\??\\C:\\f.dll", 0), L"\\??\\C:\\f.dll");
  EXPECT_EQ(routines.mapFileName(L"/usr/f", 2), L"/usr/f");
  EXPECT_EQ(routines.mapFileName(nullptr, 0), L"");
}

struct Split {
  const char* test;
  const wchar_t* list;
  Texts parts;
};

class SplitPathList : public ::testing::TestWithParam<Split> {};

TEST_P(SplitPathList, GivesTheParts) {
  FakeWindowsSystem system(kUsual);
  WindowsSpecificRoutines routines(system);
  Texts parts = {L"former"};
  routines.splitPathList(GetParam().list, parts);
  EXPECT_EQ(parts, GetParam().parts);
}

INSTANTIATE_TEST_SUITE_P(All,
                         SplitPathList,
                         ::testing::Values(Split{"Two", L"a;b", {L"a", L"b"}},
                                           Split{"LastSeparator", L"a;b;", {L"a", L"b;"}},
                                           Split{"EmptyInside", L"a;;b", {L"a", L"", L"b"}},
                                           Split{"EmptyFirst", L";a", {L"", L"a"}},
                                           Split{"SeparatorAlone", L";", {L";"}},
                                           Split{"TwoSeparators", L";;", {L"", L";"}},
                                           Split{
                                               "Untouched", L" \"a\" ;%b%", {L" \"a\" ", L"%b%"}}),
                         [](const auto& row) { return std::string(row.param.test); });

/// The three variables for the time of a test.
struct Variables {
  ScopedVariable systemRoot{"SYSTEMROOT"};
  ScopedVariable path{"PATH"};
  ScopedVariable symbolPath{"_NT_SYMBOL_PATH"};
};

using Adder = void (IOSSpecificRoutines::*)(ISearchDirectoryContainer&);

std::vector<quiver_test::RecordedDirectory> added(Adder adder) {
  FakeWindowsSystem system(kUsual);
  WindowsSpecificRoutines routines(system);
  DirectoryRecorder dirs;
  (routines.*adder)(dirs);
  return dirs.added();
}

TEST(WindowsSpecificRoutines, AddsTheDirectoriesOfBinariesInOrder) {
  Variables variables;
  variables.systemRoot.set("C:\\Windows");
  variables.path.set("C:\\a;C:\\b;");
  EXPECT_THAT(added(&IOSSpecificRoutines::addBinSystemDirs),
              ElementsAre(Pair(L"C:\\Windows\\System32", false),
                          Pair(L"C:\\a", false),
                          Pair(L"C:\\b;", false),
                          Pair(L"C:\\Windows\\System32\\Drivers", false)));
}

TEST(WindowsSpecificRoutines, AddsTheDirectoriesOfSymbolsInOrder) {
  Variables variables;
  variables.systemRoot.set("C:\\Windows");
  variables.symbolPath.set("c:\\sym;srv*c:\\cache");
  EXPECT_THAT(added(&IOSSpecificRoutines::addSymSystemDirs),
              ElementsAre(Pair(L"c:\\sym", false),
                          Pair(L"srv*c:\\cache", false),
                          Pair(L"C:\\Windows\\Symbols", true),
                          Pair(L"C:\\Windows\\System32\\Drivers", false)));
}

TEST(WindowsSpecificRoutines, AddsNoDirectoryForSources) {
  Variables variables;
  variables.systemRoot.set("C:\\Windows");
  variables.path.set("C:\\a");
  EXPECT_THAT(added(&IOSSpecificRoutines::addSrcSystemDirs), IsEmpty());
}

TEST(WindowsSpecificRoutines, AddsNothingFromVariablesThatAreUnset) {
  Variables variables;
  EXPECT_THAT(added(&IOSSpecificRoutines::addBinSystemDirs), IsEmpty());
  EXPECT_THAT(added(&IOSSpecificRoutines::addSymSystemDirs), IsEmpty());
}

// Intended: the texts are joined as they are.
TEST(WindowsSpecificRoutines, DoublesASeparatorAtTheEndOfTheSystemRoot) {
  Variables variables;
  variables.systemRoot.set("C:\\");
  EXPECT_THAT(added(&IOSSpecificRoutines::addBinSystemDirs),
              ElementsAre(Pair(L"C:\\\\System32", false), Pair(L"C:\\\\System32\\Drivers", false)));
}

TEST(WindowsSpecificRoutines, KnowsServersByTheirPrefix) {
  FakeWindowsSystem system(kUsual);
  WindowsSpecificRoutines routines(system);
  EXPECT_TRUE(routines.isSymbolServerPath(L"SRV*c:\\cache"));
  EXPECT_TRUE(routines.isSymbolServerPath(L"SymSrv*x"));
  EXPECT_FALSE(routines.isSymbolServerPath(L"c:\\symbols"));
  EXPECT_FALSE(routines.isSymbolServerPath(L"srv"));
  EXPECT_FALSE(routines.isSymbolServerPath(nullptr));
}

}  // namespace
}  // namespace QV_2_9
