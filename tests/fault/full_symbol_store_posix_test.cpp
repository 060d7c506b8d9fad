// Stores that are full: the file goes where there is room.

#include <gmock/gmock.h>

#include "symsrv/download_fixture_test_support.h"
#include "symsrv/server_process_test_support.h"

#include "fault/scoped_file_system.h"

namespace symsrv_1_0::internal {
namespace {

using quiver_test::NativePath;
using quiver_test::ScopedFileSystem;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr int kNotAllowed = 77;

class FullStoreOnPosix : public DownloadFixture {
 protected:
  FullStoreOnPosix() { serve(); }

  /// Has `store` on a file system of its own, `options` as mount takes them, for the time of a
  /// download. Returns what it brought, in a process whose mounts nobody else sees.
  void expect(const std::string& options,
              const std::string& element,
              const std::string& path,
              const std::string& binary = "tiny64.exe") {
    m_tree.addDirectory("full");
    const int result = resultOf(startChild([&] {
      ScopedFileSystem full(NativePath(m_tree.path("full")), options);
      if (!full.refusal().empty())
        return kNotAllowed;
      const std::string got = obtain({element}, binary);
      EXPECT_EQ(got, path) << reports();
      const std::size_t asked = requests().size();
      EXPECT_EQ(obtain({element}, binary), path) << "the second time";
      EXPECT_EQ(requests().size(), asked);
      EXPECT_TRUE(got.empty() || contentOf(got) == contentOf(realFile("tiny64.pdb")));
      EXPECT_THAT(filesIn("full"), testing::Each(testing::Not(testing::EndsWith(".tmp"))));
      return HasFailure() ? 1 : 0;
    }));
    if (result == kNotAllowed)
      GTEST_SKIP() << "NOT TESTED with a full store: this system allows no mounts";
    EXPECT_EQ(result, 0);
  }

  std::string store(const std::string& name) const { return "*" + at(name); }
};

// The file has 72 KiB, compressed 2.
const char* const kTooSmall = "size=32k";

TEST_F(FullStoreOnPosix, TheNextStoreTakesACompressedDownload) {
  expect(kTooSmall,
         "srv" + store("full") + store("b") + "*" + address("compressed"),
         at("b/" + key()));
}

TEST_F(FullStoreOnPosix, TheNextStoreTakesAPlainDownload) {
  expect(kTooSmall, "srv" + store("full") + store("b") + "*" + address("good"), at("b/" + key()));
}

TEST_F(FullStoreOnPosix, AStoreInTheMiddleMayBeTheFullOne) {
  expect(kTooSmall, "srv" + store("a") + store("full") + "*" + address("good"), at("a/" + key()));
  EXPECT_THAT(filesIn("a"), ElementsAre(key()));
}

TEST_F(FullStoreOnPosix, TheOnlyStoreIsStoodInForByTheDefaultStore) {
  expect(kTooSmall, "srv" + store("full") + "*" + address("good"), at("default/" + key()));
  expect(kTooSmall, "srv" + store("full") + "*" + address("compressed"), at("default/" + key()));
}

TEST_F(FullStoreOnPosix, NoFilesCanBeMadeAtAll) {
  expect("nr_inodes=1", "srv" + store("full") + "*" + address("good"), at("default/" + key()));
  expect("nr_inodes=3", "srv" + store("full") + "*" + address("good"), at("default/" + key()));
}

TEST_F(FullStoreOnPosix, ReadOnlyOnesAreLeftOut) {
  expect("ro", "srv" + store("full") + "*" + address("good"), at("default/" + key()));
  expect("ro", "srv" + store("full") + store("b") + "*" + address("compressed"), at("b/" + key()));
}

TEST_F(FullStoreOnPosix, WhatLiesCompressedInADirectoryGoesToTheNextStore) {
  file("c", "tiny64.pd_", key("tiny64.pd_"));
  expect(kTooSmall, "srv" + store("full") + store("b") + store("c"), at("b/" + key()));
  expect(kTooSmall, "srv" + store("full") + store("c"), at("default/" + key()));
}

TEST_F(FullStoreOnPosix, WhatLiesPlainInADirectoryServesThere) {
  file("c", "tiny64.pdb");
  expect(kTooSmall, "srv" + store("full") + store("c"), at("c/" + key()));
  EXPECT_THAT(filesIn("default"), IsEmpty());
}

}  // namespace
}  // namespace symsrv_1_0::internal
