// File names as Windows reads them, whatever they look like.

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "paku/environment.h"
#include "paku/filename_parts_test_support.h"

#include "support/scoped_directory.h"
#include "support/temp_tree.h"

namespace PAKU_3_1 {
namespace {

using internal::joined;
using internal::walkUp;
using internal::withoutFirstDirectory;
using testing::ElementsAre;

std::wstring canonical(const wchar_t* path) {
  return Filename(path).canonical().text().text();
}

TEST(FilenameWindows, TakesALeadingSeparatorForNoRoot) {
  EXPECT_FALSE(Filename(L"/x").isAbsolute());
  EXPECT_FALSE(Filename(L"\\x").isAbsolute());
  EXPECT_EQ(withoutFirstDirectory(L"/build/src/a.cpp"), L"src\\a.cpp");
  EXPECT_THAT(walkUp(L"/usr/bin/app"), ElementsAre(L"/usr/bin/", L"/usr\\"));
}

TEST(FilenameWindows, TakesEitherSeparator) {
  const Filename name(L"/x/we\\ird.c");
  EXPECT_EQ(name.baseWithoutExtension(), String(L"ird"));
  EXPECT_EQ(name.path(), String(L"/x/we\\"));
}

TEST(FilenameWindows, GivesARootedNameTheDriveOfTheCurrentDirectory) {
  const std::wstring drive = currentDirectory().substr(0, 2);
  EXPECT_EQ(joined(L"/res", L"archive"), drive + L"/res\\archive");
}

TEST(FilenameWindows, TakesABareDriveForItsRoot) {
  EXPECT_TRUE(Filename(L"D:").isAbsolute());
  EXPECT_EQ(canonical(L"D:"), L"D:\\");
}

TEST(FilenameWindows, ReplacesADriveRelativeNameByWhatItStandsFor) {
  quiver_test::TempTree tree;
  const quiver_test::ScopedDirectory here(tree.root());
  const std::wstring name = tree.root().substr(0, 2) + L"sub\\a.dll";
  EXPECT_EQ(Filename(name).text().text(), tree.path("sub/a.dll"));
}

struct CanonicalCase {
  const wchar_t* path;
  const wchar_t* canonical;
};

TEST(FilenameWindows, CanonicalNamesEndBeforeTheirLastDotsAndBlanks) {
  const CanonicalCase cases[] = {
      {L"C:\\dir.\\a.dll. .", L"C:\\dir\\a.dll"},
      {L"C:/Dir/./x/../A ", L"C:\\Dir\\A"},
      {L"C:\\dir\\", L"C:\\dir"},
      {L"C:\\..\\a", L"C:\\a"},
      {L"\\\\srv\\share\\a.", L"\\\\srv\\share\\a"},
      {L"..\\x", L"..\\x"},
      {L"C:\\x\\...", L"C:\\x\\..."},
      {L"\\\\?\\C:\\dir.\\a. ", L"\\\\?\\C:\\dir.\\a. "},
      {L"srv*D:\\cache*https://host/x", L"srv*D:\\cache*https:\\host\\x"},
  };
  for (const CanonicalCase& row : cases) EXPECT_EQ(canonical(row.path), row.canonical) << row.path;
}

}  // namespace
}  // namespace PAKU_3_1
