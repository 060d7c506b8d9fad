// Names and directories that no careful caller would pass: a lookup neither crashes nor hangs, and
// answers nothing or what is really there.

#include <filesystem>
#include <string>

#include <gmock/gmock.h>

#include "scenario/bad_input_fixture.h"
#include "support/callbacks.h"
#include "support/matchers.h"

namespace QV_2_9 {
namespace {

using quiver_test::Call;
using quiver_test::IsInvalidFile;
using quiver_test::IsValidFile;

struct OddName {
  const char* testName;
  std::wstring name;
};

class OddNames : public BadInput, public testing::WithParamInterface<OddName> {};

TEST_P(OddNames, AreNotFound) {
  m_tree.addFile("a.txt");
  m_tree.addFile("sub/b.txt");
  addTree(m_tree.root());
  expectNothing(GetParam().name);
}

INSTANTIATE_TEST_SUITE_P(BadInput,
                         OddNames,
                         testing::Values(OddName{"dot", L"."},
                                         OddName{"dotDot", L".."},
                                         OddName{"climbing", L"../../../../absent-file"},
                                         OddName{"separators", L"////"},
                                         OddName{"backslashes", L"\\\\"},
                                         OddName{"drive", L"C:\\"},
                                         OddName{"wildcard", L"*.txt"},
                                         OddName{"questionMark", L"?.txt"},
                                         OddName{"trailingSeparator", L"a.txt/"},
                                         OddName{"stream", L"a.txt:stream"},
                                         OddName{"longComponent", std::wstring(70000, L'x')},
                                         OddName{"longPath",
                                                 L"/" + std::wstring(20000, L'/') + L"y"},
                                         OddName{"manyComponents",
                                                 [] {
                                                   std::wstring name;
                                                   for (int i = 0; i < 5000; ++i) name += L"d/";
                                                   return name + L"f";
                                                 }()},
                                         OddName{"loneSurrogate", L"a\xD800.txt"},
                                         OddName{"controlCharacters", L"a\n\x1b[31m.txt"}),
                         [](const auto& row) { return row.param.testName; });

TEST_F(BadInput, DirectoriesThatAreNoneOfferNothing) {
  addTree(m_tree.path("absent"));
  addTree(m_tree.addFile("file"));
  addTree(m_tree.addUnreadableFile("unreadable"));
  addTree(L"");
  addTree(std::wstring(70000, L'd'));
  addTree(L"*?<>|");
  m_dirs->addSearchDir(scAllFiles, nullptr, true, true);
  expectNothing(L"wanted.txt");
}

TEST_F(BadInput, DeepTreesAreSearchedToTheEnd) {
  m_tree.addChain("d", 150, "wanted.txt");
  addTree(m_tree.root());
  expectNothing(L"absent.txt");
}

TEST_F(BadInput, AFileThatCannotBeReadIsRejected) {
  const std::wstring unreadable = m_tree.addUnreadableFile("tree/wanted.txt");
  addTree(m_tree.path("tree"));
  quiver_test::RecordingNoFilesFound none;
  ObjectPtr<IInvalidFile> rejected;
  none.answer = [&](const Call&, IValidator&, IInvalidFileIterator& files, IValidFileIterator&) {
    rejected = files.next();
    return ObjectPtr<IValidFile>();
  };
  m_env->setNoFilesFoundCallback(&none);
  EXPECT_FALSE(findBin(L"wanted.txt"));
  EXPECT_THAT(rejected, IsInvalidFile(ecUnusable, L"%CantOpenFile"));
  EXPECT_EQ(rejected->getPath(), unreadable);
  ChecksumValidator check(scSourceFiles, recordedChecksum(m_tree.addFile("any", "x")));
  EXPECT_FALSE(findSrc(unreadable, L"", &check));
}

TEST_F(BadInput, FileNamesThatAreNoTextAreFoundAndOpened) {
  const std::wstring wanted = m_tree.addFile(std::filesystem::path("tree/caf\xE9/wanted.txt"), "x");
  addTree(m_tree.path("tree"));
  const ObjectPtr<IValidFile> found = findSrc(L"wanted.txt");
  ASSERT_TRUE(found);
  ChecksumValidator check(scSourceFiles, recordedChecksum(m_tree.addFile("same", "x")));
  EXPECT_THAT(findSrc(found->getPath(), L"", &check), IsValidFile(found->getPath(), 0, 2));
  EXPECT_EQ(found->getPath(), wanted);
}

TEST_F(BadInput, NullTextsAreEmptyOnes) {
  const std::wstring wanted = m_tree.addFile("wanted.txt");
  addTree(m_tree.root());
  EXPECT_THAT(m_search->findSymFile(L"wanted.txt", nullptr, nullptr, nullptr, nullptr, nullptr),
              IsValidFile(wanted, 1, 2));
  EXPECT_THAT(m_search->findSrcFile(L"wanted.txt", nullptr, nullptr, nullptr, nullptr),
              IsValidFile(wanted, 1, 2));
}

}  // namespace
}  // namespace QV_2_9
