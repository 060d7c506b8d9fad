// Tests of output_file.h.

#include "output_file.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "support/temp_tree.h"

namespace quiver_tool {
namespace {

namespace fs = std::filesystem;

using quiver_test::NativePath;
using quiver_test::TempTree;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

std::string contentOf(const std::wstring& path) {
  std::ifstream file(NativePath(path).get(), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// All entries: a file in the making that stayed shows here.
std::vector<std::string> entriesOf(const std::wstring& directory) {
  std::vector<std::string> names;
  for (const fs::directory_entry& entry : fs::directory_iterator(NativePath(directory).get()))
    names.push_back(entry.path().filename().string());
  return names;
}

TEST(OutputFile, IsWrittenAndWrittenAgain) {
  TempTree tree;
  const std::wstring path = tree.path("a.html");
  EXPECT_EQ(writeOutputFile(path, "a longer text"), "");
  EXPECT_EQ(contentOf(path), "a longer text");
  EXPECT_EQ(writeOutputFile(path, "short"), "");
  EXPECT_EQ(contentOf(path), "short");
  EXPECT_THAT(entriesOf(tree.root()), ElementsAre("a.html"));
}

TEST(OutputFile, MayHaveTheLongestName) {
  TempTree tree;
  const std::string name(255, 'n');
  EXPECT_EQ(writeOutputFile(tree.path(name), "x"), "");
  EXPECT_THAT(entriesOf(tree.root()), ElementsAre(name));
}

TEST(OutputFile, IsLeftAloneByTheQuestionForObstacles) {
  TempTree tree;
  const std::wstring path = tree.addFile("a.html", "before");
  EXPECT_EQ(outputObstacle(path), "");
  EXPECT_EQ(outputObstacle(tree.path("b.html")), "");
  EXPECT_EQ(contentOf(path), "before");
  EXPECT_THAT(entriesOf(tree.root()), ElementsAre("a.html"));
}

TEST(OutputFile, IsNoDirectory) {
  TempTree tree;
  EXPECT_EQ(outputObstacle(tree.root()), "it is a directory");
  EXPECT_EQ(writeOutputFile(tree.root(), "x"), "it is a directory");
  EXPECT_EQ(writeOutputFile(tree.path("sub/"), "x"), "it names no file");
  EXPECT_EQ(writeOutputFile(L"", "x"), "it names no file");
  EXPECT_THAT(entriesOf(tree.root()), IsEmpty());
}

TEST(OutputFile, NeedsItsDirectory) {
  TempTree tree;
  tree.addFile("file");
  for (const char* name : {"none/a.html", "file/a.html"}) {
    const std::string prefix = "its directory cannot be opened: ";
    EXPECT_THAT(outputObstacle(tree.path(name)), StartsWith(prefix));
    EXPECT_GT(outputObstacle(tree.path(name)).size(), prefix.size());
    EXPECT_THAT(writeOutputFile(tree.path(name), "x"), StartsWith(prefix));
  }
}

TEST(OutputFile, IsTheSameUnderEachOfItsNames) {
  TempTree tree;
  const std::wstring path = tree.addFile("a");
  EXPECT_TRUE(isSameFile(path, tree.path("./a")));
  EXPECT_FALSE(isSameFile(path, tree.addFile("b")));
  EXPECT_FALSE(isSameFile(path, tree.path("none")));
  EXPECT_FALSE(isSameFile(tree.path("none"), tree.path("none")));
}

}  // namespace
}  // namespace quiver_tool
