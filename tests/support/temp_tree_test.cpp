#include "support/temp_tree.h"

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>

#include <gmock/gmock.h>

namespace quiver_test {
namespace {

namespace fs = std::filesystem;

constexpr auto kSeparator = static_cast<wchar_t>(fs::path::preferred_separator);

std::string contentOf(const std::wstring& path) {
  std::ifstream file(NativePath(path).get(), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

TEST(TempTree, RootIsAnEmptyCanonicalDirectory) {
  const TempTree tree;
  EXPECT_TRUE(fs::is_empty(tree.root()));
  EXPECT_EQ(fs::canonical(tree.root()), fs::path(tree.root()));
}

TEST(TempTree, TreesAreApart) {
  const TempTree a;
  const TempTree b;
  EXPECT_NE(a.root(), b.root());
}

TEST(TempTree, AddsFilesWithTheirDirectories) {
  TempTree tree;
  const std::wstring path = tree.addFile("a/b.dll", "content");
  EXPECT_EQ(path, tree.root() + kSeparator + L"a" + kSeparator + L"b.dll");
  EXPECT_EQ(path, tree.path("a/b.dll"));
  EXPECT_EQ(contentOf(path), "content");
}

TEST(TempTree, ReplacesTheContentOfAFile) {
  TempTree tree;
  tree.addFile("a.dll", "long content");
  EXPECT_EQ(contentOf(tree.addFile("a.dll", "new")), "new");
}

TEST(TempTree, KeepsNamesBeyondAscii) {
  TempTree tree;
  const std::wstring path = tree.addFile(L"\u00e9\u4e2d.dll");
  EXPECT_EQ(path, tree.root() + kSeparator + L"\u00e9\u4e2d.dll");
  EXPECT_TRUE(fs::exists(NativePath(path).get()));
}

TEST(TempTree, AddsSparseFiles) {
  TempTree tree;
  EXPECT_EQ(fs::file_size(tree.addSparseFile("big", 3ull << 30)), 3ull << 30);
}

TEST(TempTree, AddsDirectories) {
  TempTree tree;
  EXPECT_TRUE(fs::is_directory(tree.addDirectory("a/b/c")));
}

TEST(TempTree, AddsChains) {
  TempTree tree;
  tree.addChain("d", 3, "leaf.txt");
  EXPECT_TRUE(fs::is_regular_file(tree.path("d/d/d/leaf.txt")));
}

TEST(TempTree, RefusesNamesOutsideTheTree) {
  TempTree tree;
  EXPECT_THROW(tree.addFile("/elsewhere"), std::invalid_argument);
}

TEST(TempTree, AddsUnreadableFilesThatAreThere) {
  TempTree tree;
  const std::wstring path = tree.addUnreadableFile("a/unreadable");
  EXPECT_TRUE(fs::exists(NativePath(path).get()));
  EXPECT_FALSE(fs::is_directory(NativePath(path).get()));
}

TEST(TempTree, SetsTimes) {
  TempTree tree;
  const std::wstring path = tree.addFile("old");
  tree.setModificationTime("old", 1'000'000'000);
  const auto time = std::chrono::file_clock::to_sys(fs::last_write_time(NativePath(path).get()));
  EXPECT_EQ(std::chrono::duration_cast<std::chrono::seconds>(time.time_since_epoch()).count(),
            1'000'000'000);
}

class TempTreeRemoval : public testing::Test {
 protected:
  ~TempTreeRemoval() override {
    const std::wstring root = m_tree->root();
    m_tree.reset();
    EXPECT_FALSE(fs::exists(root));
    EXPECT_FALSE(fs::exists(root + L".removing"));
  }

  std::unique_ptr<TempTree> m_tree = std::make_unique<TempTree>();
};

TEST_F(TempTreeRemoval, TakesEverythingAlong) {
  m_tree->addFile("a/b/c.dll", "x");
  m_tree->addFile("a/d.dll", "x");
  m_tree->addUnreadableFile("pipe");
}

TEST_F(TempTreeRemoval, CopesWithDepth) {
  m_tree->addChain("a_long_directory_name", 400, "leaf");
}

TEST_F(TempTreeRemoval, CopesWithReadOnlyDirectories) {
  m_tree->addFile("a/b/c.dll", "x");
  fs::permissions(m_tree->path("a/b"), fs::perms::owner_read);
  fs::permissions(m_tree->path("a"), fs::perms::none);
}

}  // namespace
}  // namespace quiver_test
