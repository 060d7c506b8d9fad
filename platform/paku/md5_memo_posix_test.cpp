// Checksums of real files that were read before.

#include <chrono>
#include <filesystem>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "paku/file.h"
#include "paku/md5_memo.h"

#include "support/temp_tree.h"

namespace fs = std::filesystem;

namespace PAKU_3_1::internal {
namespace {

/// Files of a test have not rested; here they need not.
class RememberedMd5Posix : public testing::Test {
 protected:
  RememberedMd5Posix() {
    Md5Memo::instance().clear();
    Md5Memo::instance().setRest(std::chrono::nanoseconds(0));
  }
  ~RememberedMd5Posix() override {
    Md5Memo::instance().clear();
    Md5Memo::instance().setRest(Md5Memo::kRest);
  }

  /// Longer than a tick of the clock that files get their times from.
  static void rest() { std::this_thread::sleep_for(std::chrono::milliseconds(50)); }

  std::wstring md5(const char* name) const {
    return File(Filename(m_tree.path(name))).md5checksum().text();
  }
  static std::size_t hits() { return Md5Memo::instance().hits(); }

  quiver_test::TempTree m_tree;
};

TEST_F(RememberedMd5Posix, IsUsedForAFileThatWasReadBefore) {
  m_tree.addFile("a", "new");
  rest();
  const std::size_t before = hits();
  EXPECT_EQ(md5("a"), L"22af645d1859cb5ca6da0c484f1f37ea");
  EXPECT_EQ(hits(), before);
  EXPECT_EQ(md5("a"), L"22af645d1859cb5ca6da0c484f1f37ea");
  EXPECT_EQ(hits(), before + 1);
}

TEST_F(RememberedMd5Posix, IsNotUsedForANewContentOfTheSameSizeAndTime) {
  m_tree.addFile("a", "new");
  const fs::file_time_type time = fs::last_write_time(m_tree.path("a"));
  rest();
  EXPECT_EQ(md5("a"), L"22af645d1859cb5ca6da0c484f1f37ea");
  rest();
  m_tree.addFile("a", "old");
  fs::last_write_time(m_tree.path("a"), time);
  EXPECT_EQ(md5("a"), L"149603e6c03516362a8da23f624db945");
}

TEST_F(RememberedMd5Posix, IsNotUsedForAnotherFileOfThatName) {
  m_tree.addFile("a", "new");
  m_tree.addFile("b", "old");
  fs::last_write_time(m_tree.path("b"), fs::last_write_time(m_tree.path("a")));
  rest();
  EXPECT_EQ(md5("a"), L"22af645d1859cb5ca6da0c484f1f37ea");
  fs::rename(m_tree.path("b"), m_tree.path("a"));
  EXPECT_EQ(md5("a"), L"149603e6c03516362a8da23f624db945");
}

TEST_F(RememberedMd5Posix, IsThatOfTheContentUnderAnyName) {
  m_tree.addFile("a", "new");
  rest();
  md5("a");
  fs::rename(m_tree.path("a"), m_tree.path("b"));
  EXPECT_EQ(md5("b"), L"22af645d1859cb5ca6da0c484f1f37ea");
  EXPECT_EQ(md5("a"), L"");
}

TEST_F(RememberedMd5Posix, NeedsAFileThatRested) {
  Md5Memo::instance().setRest(Md5Memo::kRest);
  m_tree.addFile("a", "new");
  md5("a");
  EXPECT_EQ(Md5Memo::instance().size(), 0u);
}

}  // namespace
}  // namespace PAKU_3_1::internal
