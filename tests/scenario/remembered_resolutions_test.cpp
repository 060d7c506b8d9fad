// The story of a result directory over two evenings: a symbol file is resolved by hand, archived
// and found again after the build directories are gone; a source file is given up, until the result
// is recorded anew.

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "quiver/quiver.h"
#include "support/callbacks.h"
#include "support/matchers.h"
#include "support/native_path.h"
#include "support/scoped_environment.h"
#include "support/temp_tree.h"

using namespace QV_2_9;
using quiver_test::Call;
using quiver_test::IsValidFile;
using quiver_test::NativePath;
using quiver_test::RecordingFilesFound;
using quiver_test::RecordingNoFilesFound;
using quiver_test::ScopedVariable;
using quiver_test::TempTree;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr const wchar_t* kViewer = L"viewer";
constexpr const wchar_t* kBinary = L"C:\\ci\\out\\app.exe";
constexpr const wchar_t* kSymbols = L"C:\\ci\\out\\app.pdb";
constexpr const wchar_t* kSource = L"C:\\ci\\src\\main.cpp";
constexpr const wchar_t* kChecksum = L"1111";
constexpr const char* kArchivedSymbols =
    "results/r1/archive/symbols/app.pdb/92eb5ffee6ae2fec3ad71c777531578f/app.pdb";

/// Decides nothing, but notes which candidates a search looked at.
class Onlooker final : public IValidatorCallback {
 public:
  validation_result_t validate(const wchar_t* path, IErrorInfoContainer&) override {
    candidates.emplace_back(path);
    return vrUndecided;
  }
  std::vector<std::wstring> candidates;
};

class RememberedResolutions : public testing::Test {
 protected:
  RememberedResolutions() {
    tree.addDirectory("results/r1");
    result = manager->getResultDirContext(tree.path("results/r1").c_str());
    const ObjectPtr<IResolutionContext> user = manager->createUserContext();
    manager->setParentContext(result.get(), user.get());
    builds->addSearchDir(scAllFiles, tree.path("builds").c_str(), true, true);
    manager->setSearchDirs(user.get(), builds, kViewer);
    memory = createSearchManipulatorByContext(result, builds, nullptr);
    memory->setSearchStartedMode(kViewer, hmAdvisory);
    memory->setFilesFoundMode(kViewer, hmAdvisory);
  }

  ObjectPtr<IFileSearch> newSearch() const {
    return manager->createFileSearch(result.get(), kViewer, nullptr);
  }
  ObjectPtr<IValidFile> findSymbols(Onlooker& onlooker) const {
    return newSearch()->findSymFile(kSymbols, kBinary, kChecksum, &onlooker, nullptr, nullptr);
  }
  ObjectPtr<IValidFile> findSource(const wchar_t* checksum, Onlooker& onlooker) const {
    return newSearch()->findSrcFile(kSource, kBinary, checksum, &onlooker, nullptr);
  }

  ScopedVariable noPath{"PATH", ""};
  ScopedVariable noSystemRoot{"SYSTEMROOT"};
  ScopedVariable noSymbolPath{"_NT_SYMBOL_PATH"};
  TempTree tree;
  ObjectPtr<IResolutionContextMgr> manager = IResolutionContextMgr::create();
  ObjectPtr<IEditableSearchDirContainer> builds = IEditableSearchDirContainer::create();
  ObjectPtr<IResolutionContext> result;
  ObjectPtr<ISearchManipulator> memory;
};

TEST_F(RememberedResolutions, PickedFileIsArchivedAndFoundWithoutItsOriginal) {
  const std::wstring newer = tree.addFile("builds/newer/app.pdb", "a");
  const std::wstring older = tree.addFile("builds/older/app.pdb", "b");
  Onlooker onlooker;

  // The user looks through everything that is found and picks the last.
  RecordingFilesFound user;
  user.answer = [](const Call&, IValidFileIterator& files) {
    ObjectPtr<IValidFile> last;
    while (const ObjectPtr<IValidFile> file = files.next()) last = file;
    return last;
  };
  memory->setFilesFoundUserCallback(kViewer, &user);
  const ObjectPtr<IValidFile> picked = findSymbols(onlooker);
  ASSERT_THAT(picked, IsValidFile(older, 1, ssHighPrioritySearchDirs));
  EXPECT_THAT(onlooker.candidates, ElementsAre(newer, older));
  memory->setFilesFoundUserCallback(kViewer, nullptr);

  ASSERT_EQ(manager->archiveFile(result.get(), picked->getPath(), scSymbolFiles), arArchived);
  const std::wstring archived = tree.path(kArchivedSymbols);
  std::filesystem::remove_all(NativePath(tree.path("builds")).get());

  // The remembered path is gone: the steps run, and the first one has the copy.
  onlooker.candidates.clear();
  EXPECT_THAT(findSymbols(onlooker), IsValidFile(archived, 1, ssArchiveSearchDirs));
  EXPECT_THAT(onlooker.candidates, ElementsAre(archived));

  // The copy is remembered now, and suggested: nothing else is looked at.
  tree.addFile("results/r1/archive/symbols/app.pdb/other/app.pdb", "c");
  onlooker.candidates.clear();
  EXPECT_THAT(findSymbols(onlooker), IsValidFile(archived, 1, kSuggestedResolutionStep));
  EXPECT_THAT(onlooker.candidates, ElementsAre(archived));
}

TEST_F(RememberedResolutions, FileGivenUpIsNotSearchedForUntilTheResultChanges) {
  Onlooker onlooker;
  RecordingNoFilesFound user;
  memory->setNoFilesFoundMode(kViewer, hmAuthoritative);
  memory->setNoFilesFoundUserCallback(kViewer, &user);

  EXPECT_FALSE(findSource(kChecksum, onlooker));
  EXPECT_EQ(user.calls().size(), 1u);

  // Somebody builds the product: it could be found now, but is not looked for.
  const std::wstring late = tree.addFile("builds/src/main.cpp", "int main() {}");
  EXPECT_FALSE(findSource(kChecksum, onlooker));
  EXPECT_THAT(onlooker.candidates, IsEmpty());

  // Another binary of the same name is another request.
  EXPECT_THAT(findSource(L"2222", onlooker), IsValidFile(late, 1, ssHighPrioritySearchDirs));
  EXPECT_THAT(onlooker.candidates, ElementsAre(late));
  EXPECT_FALSE(findSource(kChecksum, onlooker)) << "the first request stays given up";

  memory->getSearchHistory()->clearAssociations(scSourceFiles);
  EXPECT_THAT(findSource(kChecksum, onlooker), IsValidFile(late, 1, ssHighPrioritySearchDirs));
  memory->setNoFilesFoundUserCallback(kViewer, nullptr);
}

}  // namespace
