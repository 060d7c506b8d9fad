// A result recorded on a Windows build machine is opened where the product was unpacked and checked
// out: its binary, symbol file and sources are found by their recorded names and checksums.

#include <gmock/gmock.h>

#include "scenario/viewer.h"
#include "support/callbacks.h"
#include "support/matchers.h"

namespace QV_2_9 {
namespace {

using quiver_test::Call;
using quiver_test::IsInvalidFile;
using quiver_test::IsValidFile;

class RecordedElsewhere : public quiver_test::Viewer {
 protected:
  RecordedElsewhere() {
    m_binary = m_tree.addFile("product/bin/app.exe", "binary");
    m_symbols = m_tree.addFile("product/bin/app.pdb", "symbols");
    m_oldSource = m_tree.addFile("checkouts/a-old/src/core/main.cpp", "int main() { return 1; }");
    m_source = m_tree.addFile("checkouts/b-new/src/core/main.cpp", "int main() { return 0; }");
    m_dirs->addSearchDir(scAllFiles, m_tree.path("product").c_str(), true, true);
    m_dirs->addSearchDir(scSourceFiles, m_tree.path("checkouts").c_str(), true, false);
  }

  std::wstring m_binary;
  std::wstring m_symbols;
  std::wstring m_oldSource;
  std::wstring m_source;
};

TEST_F(RecordedElsewhere, FindsTheBinaryBelowASearchDirectory) {
  EXPECT_THAT(findBin(L"C:\\ci\\agent\\out\\app.exe"), IsValidFile(m_binary, 1, 2));
}

TEST_F(RecordedElsewhere, FindsTheSymbolFileByItsChecksum) {
  ChecksumValidator check(scSymbolFiles, recordedChecksum(m_symbols));
  EXPECT_THAT(findSym(L"C:\\ci\\agent\\out\\app.pdb", L"C:\\ci\\agent\\out\\app.exe", &check),
              IsValidFile(m_symbols, 0, 2));
}

TEST_F(RecordedElsewhere, FindsTheSymbolFileBesideTheLocalBinary) {
  m_dirs->clearSearchDirs(scAllFiles);
  EXPECT_THAT(findSym(L"C:\\ci\\agent\\out\\app.pdb", m_binary), IsValidFile(m_symbols, 1, 5));
}

TEST_F(RecordedElsewhere, GuessesTheSymbolFileFromTheBinary) {
  m_dirs->clearSearchDirs(scAllFiles);
  EXPECT_THAT(findSym(L"C:\\ci\\agent\\out\\app_v2.pdb", m_binary), IsValidFile(m_symbols, 1, 5));
}

TEST_F(RecordedElsewhere, TakesTheSourceThatMatchesAmongTwoVersions) {
  ChecksumValidator check(scSourceFiles, recordedChecksum(m_source));
  EXPECT_THAT(findSrc(L"C:\\ci\\agent\\src\\core\\main.cpp", L"", &check),
              IsValidFile(m_source, 0, 6));
}

TEST_F(RecordedElsewhere, TakesTheFirstSourceWithoutAChecksum) {
  EXPECT_THAT(findSrc(L"C:\\ci\\agent\\src\\core\\main.cpp"), IsValidFile(m_oldSource, 1, 6));
}

TEST_F(RecordedElsewhere, FindsASourceRecordedOnLinux) {
  EXPECT_THAT(findSrc(L"/ci/agent/src/core/main.cpp"), IsValidFile(m_oldSource, 1, 6));
}

TEST_F(RecordedElsewhere, FindsASourceWrittenInOtherLetterCase) {
  EXPECT_THAT(findSrc(L"C:\\CI\\Agent\\SRC\\Core\\Main.CPP"), IsValidFile(m_oldSource, 1, 6));
}

TEST_F(RecordedElsewhere, SaysWhySourcesWereRejected) {
  const std::wstring other = m_tree.addFile("other", "something else");
  ChecksumValidator check(scSourceFiles, recordedChecksum(other));
  quiver_test::RecordingNoFilesFound none;
  std::vector<ObjectPtr<IInvalidFile>> rejected;
  none.answer = [&](const Call&, IValidator&, IInvalidFileIterator& files, IValidFileIterator&) {
    while (const ObjectPtr<IInvalidFile> file = files.next()) rejected.push_back(file);
    return ObjectPtr<IValidFile>();
  };
  m_env->setNoFilesFoundCallback(&none);
  EXPECT_FALSE(findSrc(L"C:\\ci\\agent\\src\\core\\main.cpp", L"", &check));
  EXPECT_THAT(rejected,
              testing::ElementsAre(IsInvalidFile(ecSourceMismatch, L"%ChecksumMismatch"),
                                   IsInvalidFile(ecSourceMismatch, L"%ChecksumMismatch")));
}

TEST_F(RecordedElsewhere, PrefersTheArchivedCopy) {
  const std::wstring archived = m_tree.addFile("archive/app.exe/0123/app.exe", "binary");
  m_archives->addSearchDir(scBinaryFiles, m_tree.path("archive").c_str(), true, true);
  EXPECT_THAT(findBin(L"C:\\ci\\agent\\out\\app.exe"), IsValidFile(archived, 1, 1));
}

TEST_F(RecordedElsewhere, FindsTheRecordedPathItself) {
  m_dirs->clearSearchDirs(scAllFiles);
  EXPECT_THAT(findBin(m_binary), IsValidFile(m_binary, 1, 3));
}

TEST_F(RecordedElsewhere, FindsABinaryOnThePath) {
  m_dirs->clearSearchDirs(scAllFiles);
  const std::wstring tool = m_tree.addFile("path dir/tool.exe");
  m_path.set(m_tree.path("path dir"));
  EXPECT_THAT(findBin(L"C:\\tools\\tool.exe"), IsValidFile(tool, 1, 4));
}

TEST_F(RecordedElsewhere, FindsSymbolsInThePlainDirectoriesOfTheSymbolPath) {
  m_dirs->clearSearchDirs(scAllFiles);
  const std::wstring symbols = m_tree.addFile("sym/lib.pdb");
  m_symbolPath.set(L"srv*/nowhere*https://127.0.0.1:1/x;" + m_tree.path("sym"));
  EXPECT_THAT(findSym(L"C:\\ci\\lib.pdb", L"C:\\ci\\lib.dll"), IsValidFile(symbols, 1, 4));
}

}  // namespace
}  // namespace QV_2_9
