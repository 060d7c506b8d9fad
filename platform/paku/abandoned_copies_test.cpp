// What copies leave whose process was killed, and how it goes.

#include <ctime>
#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "paku/file_ops.h"
#include "paku/temporary_name.h"

#include "support/scoped_directory.h"
#include "support/temp_tree.h"

namespace fs = std::filesystem;

namespace PAKU_3_1 {
namespace {

using quiver_test::TempTree;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

constexpr std::int64_t kMinute = 60;

std::vector<std::string> entriesOf(const std::wstring& directory) {
  std::vector<std::string> names;
  for (const fs::directory_entry& entry :
       fs::directory_iterator(quiver_test::NativePath(directory).get()))
    names.push_back(entry.path().filename().string());
  return names;
}

class AbandonedCopies : public testing::Test {
 protected:
  void removeAt(std::int64_t time) const {
    removeAbandonedCopies(Filename(tree.path("out/app.dll")), time);
  }

  TempTree tree;
  const std::int64_t now = std::time(nullptr);
};

TEST_F(AbandonedCopies, GoAfterADay) {
  tree.addFile("out/" + internal::temporaryName(1, 0));
  tree.addFile("out/" + internal::temporaryName(99999, 7));
  removeAt(now);
  removeAt(now + kCopyIsAbandonedAfter - kMinute);
  EXPECT_EQ(entriesOf(tree.path("out")).size(), 2u);
  removeAt(now + kCopyIsAbandonedAfter + kMinute);
  EXPECT_THAT(entriesOf(tree.path("out")), IsEmpty());
}

TEST_F(AbandonedCopies, AreNotToldByTheTimeOfTheContent) {
  const std::string name = "out/" + internal::temporaryName(1, 0);
  tree.addFile(name);
  tree.setModificationTime(name, 1'000'000'000);
  removeAt(now);
  EXPECT_EQ(entriesOf(tree.path("out")).size(), 1u) << "a copy that is about to get its name";
}

TEST_F(AbandonedCopies, AreNothingElse) {
  tree.addFile("out/app.dll");
  tree.addFile("out/.paku-1-0.tmp.bak");
  tree.addDirectory("out/.paku-1-0.tmp");
  removeAt(now + 2 * kCopyIsAbandonedAfter);
  EXPECT_THAT(entriesOf(tree.path("out")),
              UnorderedElementsAre("app.dll", ".paku-1-0.tmp.bak", ".paku-1-0.tmp"));
}

TEST_F(AbandonedCopies, AreNotTheTargetItself) {
  const std::wstring target = tree.addFile("out/.paku-1-0.tmp");
  removeAbandonedCopies(Filename(target), now + 2 * kCopyIsAbandonedAfter);
  EXPECT_THAT(entriesOf(tree.path("out")), ElementsAre(".paku-1-0.tmp"));
}

TEST_F(AbandonedCopies, AreFoundBesideABareName) {
  tree.addFile("out/.paku-1-0.tmp");
  const quiver_test::ScopedDirectory here(tree.path("out"));
  removeAbandonedCopies(Filename(L"app.dll"), now + 2 * kCopyIsAbandonedAfter);
  EXPECT_THAT(entriesOf(tree.path("out")), IsEmpty());
}

TEST_F(AbandonedCopies, OfATargetThatHasNoPlaceAreNone) {
  removeAbandonedCopies(Filename(tree.path("missing/app.dll")), now);
  removeAbandonedCopies(Filename(L""), now);
  EXPECT_THAT(entriesOf(tree.root()), IsEmpty());
}

}  // namespace
}  // namespace PAKU_3_1
