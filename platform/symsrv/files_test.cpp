// Files that get their names last, and folders that are no links.

#include "symsrv/files.h"

#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "paku/text_encoding.h"

#include "support/temp_tree.h"

namespace symsrv_1_0::internal {
namespace {

using quiver_test::TempTree;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::string utf8(const std::wstring& text) {
  std::string bytes;
  EXPECT_TRUE(PAKU_3_1::encode(text, bytes));
  return bytes;
}

std::string contentOf(const std::string& path) {
  const std::unique_ptr<FileSource> file = FileSource::open(path);
  if (!file)
    return "(none)";
  std::string text(static_cast<std::size_t>(file->size()), '\0');
  EXPECT_TRUE(file->read(0, text.data(), text.size()));
  return text;
}

std::vector<std::string> namesIn(const std::string& folder) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(standardPath(folder)))
    names.push_back(entry.path().filename().string());
  return names;
}

class Files : public ::testing::Test {
 protected:
  std::string root() const { return utf8(m_tree.root()); }
  std::shared_ptr<Folder> make(const std::vector<std::string>& names) {
    return Folder::open(root(), names, Folder::Missing::kMake, Links::kRefuse);
  }

  TempTree m_tree;
};

TEST_F(Files, AppearCompleteUnderTheirNames) {
  const std::shared_ptr<Folder> folder = make({"a.pdb", "ID"});
  ASSERT_TRUE(folder);
  std::unique_ptr<NewFile> file = folder->create("a.pdb");
  ASSERT_TRUE(file && file->write("abc", 3) && file->write("def", 3));
  EXPECT_FALSE(folder->read("a.pdb", Links::kFollow));
  char middle[2];
  EXPECT_TRUE(file->read(2, middle, 2));
  EXPECT_EQ(std::string(middle, 2), "cd");
  EXPECT_FALSE(file->read(5, middle, 2));
  EXPECT_TRUE(file->publish("a.pdb"));
  file.reset();
  EXPECT_EQ(contentOf(folder->pathOf("a.pdb")), "abcdef");
  EXPECT_THAT(namesIn(root() + "/a.pdb/ID"), ElementsAre("a.pdb"));
}

TEST_F(Files, LeaveNothingWhenTheyAreGivenUp) {
  make({"x"})->create("a")->write("abc", 3);
  EXPECT_THAT(namesIn(root() + "/x"), IsEmpty());
}

TEST_F(Files, TakeThePlaceOfWhatHasTheName) {
  m_tree.addFile("x/a", "old");
  const std::unique_ptr<NewFile> file = make({"x"})->create("a");
  ASSERT_TRUE(file->write("wrong", 5) && file->clear() && file->write("new", 3));
  EXPECT_TRUE(file->publish("a"));
  EXPECT_EQ(contentOf(root() + "/x/a"), "new");
}

TEST_F(Files, AreFoundOnlyWhereTheyAre) {
  m_tree.addFile("x/a", "1");
  EXPECT_TRUE(Folder::open(root(), {"x"}, Folder::Missing::kRefuse, Links::kRefuse));
  EXPECT_FALSE(Folder::open(root(), {"y"}, Folder::Missing::kRefuse, Links::kRefuse));
  EXPECT_FALSE(Folder::open(root(), {"x", "a"}, Folder::Missing::kRefuse, Links::kRefuse));
  EXPECT_FALSE(Folder::open("", {}, Folder::Missing::kRefuse, Links::kFollow));
  EXPECT_FALSE(FileSource::open(root() + "/x"));
  EXPECT_FALSE(FileSource::open(root() + "/missing"));
}

TEST_F(Files, ReadOnlyWhatIsThere) {
  const std::unique_ptr<FileSource> file = FileSource::open(utf8(m_tree.addFile("a", "abc")));
  ASSERT_TRUE(file);
  char byte = 0;
  EXPECT_TRUE(file->read(2, &byte, 1));
  EXPECT_FALSE(file->read(3, &byte, 1));
  EXPECT_FALSE(file->read(0xFFFFFFFFFFFFFFFF, &byte, 1));
}

TEST(TemporaryName, IsUniqueAndKnown) {
  const std::string name = temporaryName("a.pdb");
  EXPECT_NE(name, temporaryName("a.pdb"));
  EXPECT_TRUE(isTemporaryName(name)) << name;
  for (const char* other : {"a.tmp",
                            "a.1.2.tmp",
                            "a.pdb",
                            ".1.0123456789abcdef.tmp",
                            "a.x.0123456789abcdef.tmp",
                            "a.1.0123456789abcdeX.tmp"})
    EXPECT_FALSE(isTemporaryName(other)) << other;
}

}  // namespace
}  // namespace symsrv_1_0::internal
