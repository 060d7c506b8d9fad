// What system calls are shown for the paths that callers write.

#include "paku/native_path_win32.h"

#include <string>

#include <gtest/gtest.h>

#include "paku/named_rows_test_support.h"

#include "support/scoped_directory.h"
#include "support/temp_tree.h"

namespace PAKU_3_1::internal {
namespace {

using quiver_test::TempTree;

std::wstring native(const std::wstring& text) {
  std::wstring path;
  return nativePath(text, path) ? path : L"(none)";
}

std::wstring extended(const std::wstring& text) {
  std::wstring path;
  return extendedPath(text, path) ? path : L"(none)";
}

struct PathRow {
  const char* name;
  const wchar_t* text;
  const wchar_t* native;
  const wchar_t* extended;
};

class NativePathTableWindows : public testing::TestWithParam<PathRow> {};

TEST_P(NativePathTableWindows, IsAbsoluteAndOfAnyLength) {
  EXPECT_EQ(native(GetParam().text), GetParam().native);
  EXPECT_EQ(extended(GetParam().text), GetParam().extended);
}

constexpr PathRow kPaths[] = {
    {"Drive", L"C:\\x\\a", L"C:\\x\\a", L"\\\\?\\C:\\x\\a"},
    {"Slashes", L"C:/x/a", L"C:\\x\\a", L"\\\\?\\C:\\x\\a"},
    {"SeparatorsAtTheEnd", L"C:\\x\\\\", L"C:\\x", L"\\\\?\\C:\\x"},
    {"Dots", L"C:\\x\\.\\y\\..\\a", L"C:\\x\\a", L"\\\\?\\C:\\x\\a"},
    {"DotsAndBlanksAtTheEnd", L"C:\\x\\a. .", L"C:\\x\\a", L"\\\\?\\C:\\x\\a"},
    {"RootOfADrive", L"C:\\", L"C:\\", L"\\\\?\\C:\\"},
    {"DriveAlone", L"Q:", L"Q:\\", L"\\\\?\\Q:\\"},
    {"Share", L"\\\\srv\\share\\a", L"\\\\srv\\share\\a", L"\\\\?\\UNC\\srv\\share\\a"},
    {"ShareWithSlashes", L"//srv/share/a", L"\\\\srv\\share\\a", L"\\\\?\\UNC\\srv\\share\\a"},
    {"Prefix", L"\\\\?\\C:\\x\\a. ", L"\\\\?\\C:\\x\\a. ", L"\\\\?\\C:\\x\\a. "},
    {"PrefixOfADrive", L"\\\\?\\C:", L"\\\\?\\C:\\", L"\\\\?\\C:\\"},
    {"PrefixOfAShare",
     L"\\\\?\\UNC\\srv\\share\\a",
     L"\\\\?\\UNC\\srv\\share\\a",
     L"\\\\?\\UNC\\srv\\share\\a"},
    {"PrefixInSmallLetters",
     L"\\\\?\\unc\\s\\d\\a",
     L"\\\\?\\unc\\s\\d\\a",
     L"\\\\?\\unc\\s\\d\\a"},
    {"PrefixOfAVolume", L"\\\\?\\Volume{0}\\a", L"\\\\?\\Volume{0}\\a", L"\\\\?\\Volume{0}\\a"},
};

INSTANTIATE_TEST_SUITE_P(Paths, NativePathTableWindows, testing::ValuesIn(kPaths), byName<PathRow>);

struct NoPathRow {
  const char* name;
  const wchar_t* text;
};

class NoNativePathWindows : public testing::TestWithParam<NoPathRow> {};

TEST_P(NoNativePathWindows, IsMadeOfIt) {
  EXPECT_EQ(native(GetParam().text), L"(none)");
  EXPECT_EQ(extended(GetParam().text), L"(none)");
}

constexpr NoPathRow kNoPaths[] = {
    {"Nothing", L""},
    {"Pattern", L"C:\\x\\*"},
    {"PatternForADirectory", L"C:\\?\\a"},
    {"Stream", L"C:\\x\\a:stream"},
    {"Device", L"nul"},
    {"DeviceOfADrive", L"C:nul"},
    {"DeviceSpace", L"\\\\.\\C:\\x"},
    {"DeviceSpaceWithSlashes", L"//./PhysicalDrive0"},
    {"DiskBehindThePrefix", L"\\\\?\\PhysicalDrive0"},
    {"PipeBehindThePrefix", L"\\\\?\\pipe\\x"},
    {"AnythingBehindThePrefix", L"\\\\?\\GLOBALROOT\\Device\\Null"},
    {"PrefixAlone", L"\\\\?\\"},
    {"Address", L"srv*C:\\cache*https://host/x"},
};

INSTANTIATE_TEST_SUITE_P(Texts,
                         NoNativePathWindows,
                         testing::ValuesIn(kNoPaths),
                         byName<NoPathRow>);

TEST(NativePathWindows, BeginsInTheCurrentDirectory) {
  TempTree tree;
  const quiver_test::ScopedDirectory here(tree.root());
  EXPECT_EQ(native(L"sub/a"), tree.path("sub/a"));
  EXPECT_EQ(native(L"."), tree.root());
  EXPECT_EQ(native(L"\\a"), tree.root().substr(0, 2) + L"\\a");
}

TEST(NativePathWindows, OfADriveAloneIsItsRoot) {
  TempTree tree;
  const quiver_test::ScopedDirectory here(tree.root());
  const std::wstring drive = tree.root().substr(0, 2);
  EXPECT_EQ(native(drive), drive + L"\\");
  EXPECT_EQ(extended(drive), L"\\\\?\\" + drive + L"\\");
}

TEST(NativePathWindows, GetsThePrefixBeforeTheSystemNeedsIt) {
  const std::wstring shortPath = L"C:\\" + std::wstring(244, L'd');
  EXPECT_EQ(native(shortPath), shortPath);
  EXPECT_EQ(native(shortPath + L"d"), L"\\\\?\\" + shortPath + L"d");
  const std::wstring share = L"\\\\srv\\share\\" + std::wstring(244, L'd');
  EXPECT_EQ(native(share), L"\\\\?\\UNC" + share.substr(1));
}

}  // namespace
}  // namespace PAKU_3_1::internal
