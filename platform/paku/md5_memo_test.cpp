// What is remembered of a file that was read, and when it is not used.

#include "paku/md5_memo.h"

#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace PAKU_3_1::internal {
namespace {

constexpr std::int64_t kSecond = 1'000'000'000;
constexpr std::int64_t kNow = 1'000'000 * kSecond;
constexpr std::int64_t kLongAgo = kNow - 1000 * kSecond;

FileState stateOf(std::uint64_t file) {
  return {1, file, 10, kLongAgo, kLongAgo};
}

TEST(Md5Memo, RemembersAFileInExactlyItsState) {
  Md5Memo memo;
  memo.remember(stateOf(7), kNow, L"md5");
  EXPECT_EQ(memo.find(stateOf(7)), L"md5");
  std::vector<FileState> others(5, stateOf(7));
  ++others[0].device;
  ++others[1].file;
  ++others[2].size;
  ++others[3].modified;
  ++others[4].changed;
  for (const FileState& other : others) EXPECT_EQ(memo.find(other), std::nullopt);
  EXPECT_EQ(memo.hits(), 1u);
}

TEST(Md5Memo, KeepsTheLastStateOfAFile) {
  Md5Memo memo;
  memo.remember(stateOf(7), kNow, L"old");
  FileState changed = stateOf(7);
  changed.changed += kSecond;
  memo.remember(changed, kNow, L"new");
  EXPECT_EQ(memo.find(stateOf(7)), std::nullopt);
  EXPECT_EQ(memo.find(changed), L"new");
  EXPECT_EQ(memo.size(), 1u);
}

TEST(Md5Memo, ForgetsFilesThatHadNotRested) {
  const std::int64_t rest = std::chrono::nanoseconds(Md5Memo::kRest).count();
  Md5Memo memo;
  FileState young = stateOf(1);
  young.changed = kNow - rest;
  memo.remember(young, kNow, L"md5");
  young = stateOf(2);
  young.modified = kNow - rest;
  memo.remember(young, kNow, L"md5");
  young = stateOf(3);
  young.modified = kNow + kSecond;
  memo.remember(young, kNow, L"md5");
  EXPECT_EQ(memo.size(), 0u);
  FileState rested = stateOf(4);
  rested.changed = kNow - rest - 1;
  memo.remember(rested, kNow, L"md5");
  EXPECT_EQ(memo.size(), 1u);
}

TEST(Md5Memo, KeepsSoManyFilesAndNoMore) {
  Md5Memo memo;
  for (std::uint64_t i = 0; i < Md5Memo::kMostFiles; ++i) memo.remember(stateOf(i), kNow, L"md5");
  EXPECT_TRUE(memo.find(stateOf(0)));
  memo.remember(stateOf(Md5Memo::kMostFiles), kNow, L"md5");
  EXPECT_EQ(memo.size(), Md5Memo::kMostFiles);
  EXPECT_TRUE(memo.find(stateOf(0))) << "it was used";
  EXPECT_FALSE(memo.find(stateOf(1))) << "it was used longest ago";
}

TEST(Md5Memo, ServesSeveralThreads) {
  Md5Memo memo;
  const auto work = [&] {
    for (std::uint64_t i = 0; i < 2000; ++i) {
      memo.remember(stateOf(i % 100), kNow, std::to_wstring(i % 100));
      if (const auto md5 = memo.find(stateOf(i % 100))) {
        EXPECT_EQ(*md5, std::to_wstring(i % 100));
      }
    }
  };
  std::thread other(work);
  work();
  other.join();
  EXPECT_EQ(memo.size(), 100u);
}

}  // namespace
}  // namespace PAKU_3_1::internal
