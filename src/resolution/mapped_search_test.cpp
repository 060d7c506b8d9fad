// Tests of path_mapping.h: whole searches with its callbacks.

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "quiver/string_container.h"
#include "resolution/path_mapping_fixture.h"
#include "support/callbacks.h"
#include "support/matchers.h"

namespace QV_2_9 {
namespace {

using quiver_test::Call;
using quiver_test::IsValidFile;
using quiver_test::RecordingFilesFound;
using quiver_test::RecordingNoFilesFound;
using quiver_test::RecordingSearchStarted;

constexpr std::int32_t kSuggested = kSuggestedResolutionStep;

class MappedSearch : public PathMappingsTest {};

// --- searches

TEST_F(MappedSearch, AllButTheFirstFileOfATreeCostNoScan) {
  install();
  scan(tree.addDirectory("co"));
  std::vector<std::wstring> files;
  for (int i = 0; i < 20; ++i)
    files.push_back(
        tree.addFile("co/src/d" + std::to_string(i % 3) + "/f" + std::to_string(i), "new"));
  for (int i = 0; i < 20; ++i) {
    const std::wstring name =
        L"/ci/work/src/d" + std::to_wstring(i % 3) + L"/f" + std::to_wstring(i);
    const std::int32_t step = i == 0 ? std::int32_t{ssHighPrioritySearchDirs} : kSuggested;
    EXPECT_THAT(find(name.c_str()), IsValidFile(files[static_cast<std::size_t>(i)], 0, step));
  }
  EXPECT_EQ(rows(), Rows{L"/ci/work>" + tree.path("co") + L"*19"});
}

TEST_F(MappedSearch, TreeWhoseDirectoriesDifferInCaseIsSuggestedFrom) {
  install();
  scan(tree.addDirectory("tree"));
  const std::wstring a = tree.addFile("tree/src/a.cpp", "new");
  const std::wstring b = tree.addFile("tree/src/b.cpp", "new");
  EXPECT_THAT(find(L"C:\\ci\\SRC\\a.cpp"), IsValidFile(a, 0, ssHighPrioritySearchDirs));
  const ObjectPtr<IValidFile> second = find(L"C:\\ci\\SRC\\b.cpp");
  ASSERT_TRUE(second);
  EXPECT_EQ(second->getStep(), kSuggested);
  EXPECT_TRUE(std::filesystem::equivalent(quiver_test::NativePath(second->getPath()).get(),
                                          quiver_test::NativePath(b).get()));
}

TEST_F(MappedSearch, SuggestionThatIsValidRunsNoStep) {
  install();
  const std::wstring file = tree.addFile("co/src/a.cpp", "new");
  mappings->addMapping(L"C:\\ci", tree.path("co").c_str());
  EXPECT_THAT(find(L"c:\\CI\\src\\a.cpp"), IsValidFile(file, 0, kSuggested));
  EXPECT_FALSE(searched());
  EXPECT_EQ(mappings->getMapping(0)->getConfirmationCount(), 1);
}

TEST_F(MappedSearch, ServesEveryCategory) {
  install();
  const std::wstring file = tree.addFile("co/app", "new");
  mappings->addMapping(L"/ci", tree.path("co").c_str());
  const auto search = manager->createFileSearch(context.get(), L"key", nullptr);
  EXPECT_THAT(search->findBinFile(L"/ci/app", &isNew, nullptr), IsValidFile(file, 0, kSuggested));
  EXPECT_THAT(search->findSymFile(L"/ci/app", L"", L"", &isNew, nullptr, nullptr),
              IsValidFile(file, 0, kSuggested));
  EXPECT_THAT(search->findSrcFile(L"/ci/app", L"", L"", &isNew, nullptr),
              IsValidFile(file, 0, kSuggested));
  EXPECT_EQ(mappings->getMapping(0)->getConfirmationCount(), 3);
}

TEST_F(MappedSearch, UncheckedSuggestionsAreTakenAndNotCounted) {
  install();
  const std::wstring file = tree.addFile("co/a.cpp", "old");
  mappings->addMapping(L"/ci", tree.path("co").c_str());
  EXPECT_THAT(find(L"/ci/a.cpp", nullptr), IsValidFile(file, 1, kSuggested));
  EXPECT_EQ(mappings->getMapping(0)->getConfirmationCount(), 0);
}

TEST_F(MappedSearch, NothingIsLearnedFromFilesThatNoCheckConfirmed) {
  install();
  scan(tree.addDirectory("co"));
  tree.addFile("co/src/a.cpp", "new");
  EXPECT_TRUE(find(L"/ci/src/a.cpp", nullptr));
  EXPECT_EQ(rows(), Rows());
}

TEST_F(MappedSearch, NothingIsLearnedFromTheArchive) {
  install();
  const std::wstring file = tree.addFile("elsewhere/a.cpp", "new");
  ASSERT_EQ(manager->archiveFile(context.get(), file.c_str(), scSourceFiles), arArchived);
  const ObjectPtr<IValidFile> found = find(L"/ci/src/a.cpp");
  ASSERT_TRUE(found);
  EXPECT_EQ(found->getStep(), ssArchiveSearchDirs);
  EXPECT_EQ(rows(), Rows());
}

// --- wrong mappings

TEST_F(MappedSearch, WrongCheckoutNeverYieldsAFileThatDiffers) {
  install();
  for (const char* name : {"wrong/src/a.cpp", "wrong/src/b.cpp", "wrong/src/c.cpp"})
    tree.addFile(name, "old");
  const std::wstring a = tree.addFile("right/src/a.cpp", "new");
  const std::wstring b = tree.addFile("right/src/b.cpp", "new");
  mappings->learn(L"/ci/src/z.cpp", tree.path("wrong/src/z.cpp").c_str());
  EXPECT_FALSE(find(L"/ci/src/a.cpp")) << "no other place is known";
  EXPECT_EQ(rows(), Rows()) << "the check has refuted the mapping";
  mappings->learn(L"/ci/src/z.cpp", tree.path("wrong/src/z.cpp").c_str());
  scan(tree.path("right"));
  EXPECT_THAT(find(L"/ci/src/a.cpp"), IsValidFile(a, 0, ssHighPrioritySearchDirs));
  EXPECT_EQ(rows(), Rows{L"/ci>" + tree.path("right") + L"*0"});
  EXPECT_THAT(find(L"/ci/src/b.cpp"), IsValidFile(b, 0, kSuggested));
  EXPECT_FALSE(find(L"/ci/src/c.cpp")) << "exists in the wrong checkout only";
}

TEST_F(MappedSearch, MappingSetByHandStaysButYieldsNoWrongFile) {
  install();
  tree.addFile("wrong/a.cpp", "old");
  mappings->addMapping(L"/ci", tree.path("wrong").c_str());
  EXPECT_FALSE(find(L"/ci/a.cpp"));
  EXPECT_EQ(rows(), Rows{L"!/ci>" + tree.path("wrong") + L"*0"});
}

TEST_F(MappedSearch, RefutedMappingInFrontOfAConfirmedOneIsDropped) {
  install();
  tree.addFile("wrong/src/a.cpp", "old");
  const std::wstring right = tree.addFile("right/src/a.cpp", "new");
  mappings->learn(L"/ci/src/z.cpp", tree.path("right/src/z.cpp").c_str());
  mappings->learn(L"/ci/src/z.cpp", tree.path("wrong/src/z.cpp").c_str());
  EXPECT_THAT(find(L"/ci/src/a.cpp"), IsValidFile(right, 0, kSuggested));
  EXPECT_EQ(rows(), Rows{L"/ci>" + tree.path("right") + L"*1"});
}

TEST_F(MappedSearch, MissingFilesAndDirectoriesRefuteNothing) {
  install();
  tree.addDirectory("co/src/a.cpp");
  mappings->learn(L"/ci/src/z.cpp", tree.path("co/src/z.cpp").c_str());
  EXPECT_FALSE(find(L"/ci/src/a.cpp"));
  EXPECT_FALSE(find(L"/ci/src/missing.cpp"));
  EXPECT_EQ(mappings->getMappingCount(), 1);
}

TEST_F(MappedSearch, SuggestionOfTheCallerSaysNothingAboutMappings) {
  install();
  tree.addFile("wrong/a.cpp", "old");
  const std::wstring mine = tree.addFile("mine/other.cpp", "new");
  mappings->learn(L"/ci/z.cpp", tree.path("wrong/z.cpp").c_str());
  const auto found = manager->createFileSearch(context.get(), L"key", nullptr)
                         ->findSrcFile(L"/ci/a.cpp", L"", L"", &isNew, mine.c_str());
  EXPECT_THAT(found, IsValidFile(mine, 0, kSuggested));
  EXPECT_EQ(mappings->getMappingCount(), 1);
}

TEST_F(MappedSearch, ConfirmedMappingIsSuggestedFirst) {
  install();
  const std::wstring file = tree.addFile("one/a.cpp", "new");
  mappings->learn(L"/ci/z.cpp", tree.path("one/z.cpp").c_str());
  mappings->learn(L"/ci/z.cpp", tree.path("two/z.cpp").c_str());
  EXPECT_THAT(find(L"/ci/a.cpp"), IsValidFile(file, 0, kSuggested));
  EXPECT_EQ(rows(), (Rows{L"/ci>" + tree.path("one") + L"*1", L"/ci>" + tree.path("two") + L"*0"}));
}

// --- callbacks behind the set's

TEST_F(MappedSearch, UsersSuggestionsComeFirst) {
  install();
  const std::wstring users = tree.addFile("users/a.cpp", "new");
  tree.addFile("co/a.cpp", "new");
  mappings->addMapping(L"/ci", tree.path("co").c_str());
  RecordingSearchStarted user;
  user.answer = [&](const Call&, IStringContainer& s) {
    s.add(users.c_str());
    return true;
  };
  mappings->setSearchStartedUserCallback(&user);
  EXPECT_THAT(find(L"/ci/a.cpp"), IsValidFile(users, 0, kSuggested));
  mappings->setSearchStartedUserCallback(nullptr);
}

TEST_F(MappedSearch, UserWhoCancelsIsObeyed) {
  install();
  tree.addFile("co/a.cpp", "new");
  mappings->addMapping(L"/ci", tree.path("co").c_str());
  RecordingSearchStarted user;
  user.answer = [](const Call&, IStringContainer&) { return false; };
  mappings->setSearchStartedUserCallback(&user);
  EXPECT_FALSE(find(L"/ci/a.cpp"));
  mappings->setSearchStartedUserCallback(nullptr);
}

TEST_F(MappedSearch, UsersPickIsTheAnswerAndIsLearnedFrom) {
  install();
  const auto dirs = IEditableSearchDirContainer::create();
  for (const char* name : {"one/src", "two/src"}) {
    tree.addFile(std::string(name) + "/a.cpp", "new");
    dirs->addSearchDir(scSourceFiles, tree.path(name).c_str(), false, name[0] == 'o');
  }
  manager->setSearchDirs(context.get(), dirs, L"dirs");
  RecordingFilesFound user;
  user.answer = [](const Call&, IValidFileIterator& files) {
    files.next();
    return files.next();
  };
  mappings->setFilesFoundUserCallback(&user);
  EXPECT_THAT(find(L"/ci/src/a.cpp"),
              IsValidFile(tree.path("two/src/a.cpp"), 0, ssLowPrioritySearchDirs));
  EXPECT_EQ(rows(), Rows{L"/ci>" + tree.path("two") + L"*0"});
  mappings->setFilesFoundUserCallback(nullptr);
}

TEST_F(MappedSearch, FileThatThePersonPointsToIsLearnedFrom) {
  install();
  const std::wstring a = tree.addFile("hidden/src/a.cpp", "new");
  const std::wstring b = tree.addFile("hidden/src/b.cpp", "new");
  RecordingNoFilesFound user;
  user.answer =
      [&](const Call&, IValidator& validator, IInvalidFileIterator&, IValidFileIterator&) {
        return validator.validate(a.c_str())->getValidFile();
      };
  mappings->setNoFilesFoundUserCallback(&user);
  EXPECT_THAT(find(L"/ci/src/a.cpp"), IsValidFile(a, 0, kSuggested));
  mappings->setNoFilesFoundUserCallback(nullptr);
  EXPECT_THAT(find(L"/ci/src/b.cpp"), IsValidFile(b, 0, kSuggested));
}

TEST_F(MappedSearch, AcceptedMismatchIsNotLearnedFrom) {
  install();
  scan(tree.addDirectory("co"));
  const std::wstring file = tree.addFile("co/src/a.cpp", "old");
  RecordingNoFilesFound user;
  user.answer = [](const Call&, IValidator&, IInvalidFileIterator& bad, IValidFileIterator&) {
    const ObjectPtr<IInvalidFile> first = bad.next();
    return first ? first->makeValid() : ObjectPtr<IValidFile>();
  };
  mappings->setNoFilesFoundUserCallback(&user);
  EXPECT_THAT(find(L"/ci/src/a.cpp"), IsValidFile(file, 0, ssHighPrioritySearchDirs));
  EXPECT_EQ(rows(), Rows());
  mappings->setNoFilesFoundUserCallback(nullptr);
}

TEST_F(MappedSearch, NoFilesFoundCallbackSeesAllRejectedFiles) {
  install();
  tree.addFile("wrong/a.cpp", "old");
  mappings->learn(L"/ci/z.cpp", tree.path("wrong/z.cpp").c_str());
  RecordingNoFilesFound user;
  int seen = 0;
  user.answer = [&](const Call&, IValidator&, IInvalidFileIterator& bad, IValidFileIterator&) {
    while (bad.next()) ++seen;
    return ObjectPtr<IValidFile>();
  };
  mappings->setNoFilesFoundUserCallback(&user);
  EXPECT_FALSE(find(L"/ci/a.cpp"));
  EXPECT_EQ(seen, 1);
  mappings->setNoFilesFoundUserCallback(nullptr);
}

// --- with a manipulator

TEST_F(MappedSearch, WorksInsideDefaultCallbacks) {
  const ObjectPtr<ISearchManipulator> manipulator = newManipulator();
  setModes(*manipulator, hmAdvisory);
  ASSERT_TRUE(mappings->useInDefaultCallbacks(manipulator.get(), L"key"));
  scan(tree.addDirectory("co"));
  const std::wstring a = tree.addFile("co/src/a.cpp", "new");
  const std::wstring b = tree.addFile("co/src/b.cpp", "new");
  EXPECT_THAT(find(L"/ci/src/a.cpp"), IsValidFile(a, 0, ssHighPrioritySearchDirs));
  EXPECT_THAT(find(L"/ci/src/b.cpp"), IsValidFile(b, 0, kSuggested));
  EXPECT_EQ(rows(), Rows{L"/ci>" + tree.path("co") + L"*1"});
  const auto remembered =
      manipulator->getSearchHistory()->findSrcFileAssociation(L"/ci/src/b.cpp", L"/ci/app", L"");
  ASSERT_TRUE(remembered);
  EXPECT_EQ(remembered->getPath(), b);
  manipulator->setSearchStartedUserCallback(L"key", nullptr);
  manipulator->setFilesFoundUserCallback(L"key", nullptr);
  manipulator->setNoFilesFoundUserCallback(L"key", nullptr);
}

TEST_F(MappedSearch, TakesFilesWhereDefaultCallbacksAreDisabled) {
  const ObjectPtr<ISearchManipulator> manipulator = newManipulator();
  ASSERT_TRUE(mappings->useInDefaultCallbacks(manipulator.get(), L"key"));
  const std::wstring a = tree.addFile("co/a.cpp", "new");
  mappings->addMapping(L"/ci", tree.path("co").c_str());
  EXPECT_THAT(find(L"/ci/a.cpp"), IsValidFile(a, 0, kSuggested));
}

}  // namespace
}  // namespace QV_2_9
