// Several processes, processes that are killed, and disks that are full.

#include <chrono>
#include <csignal>
#include <random>
#include <sys/resource.h>
#include <thread>

#include <gmock/gmock.h>

#include "symsrv/download_fixture_test_support.h"
#include "symsrv/files.h"
#include "symsrv/server_process_test_support.h"

namespace symsrv_1_0::internal {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ProcessDownloadOnPosix : public DownloadFixture {
 protected:
  ProcessDownloadOnPosix() { serve(); }

  pid_t startDownload(const std::string& element) {
    return startChild([this, element] { return obtain({element}).empty() ? 1 : 0; });
  }
  std::string chain(const std::string& way) {
    return "srv*" + at("a") + "*" + at("b") + "*" + address(way);
  }
  void expectOnlyGoodFiles(const std::string& store) {
    for (const std::string& name : filesIn(store)) {
      const std::string last = name.substr(name.rfind('/') + 1);
      EXPECT_TRUE(last.empty() || isTemporaryName(last) || last == "tiny64.pdb") << name;
      if (last == "tiny64.pdb") {
        EXPECT_EQ(contentOf(at(store + "/" + name)), contentOf(realFile("tiny64.pdb")));
      }
    }
  }
};

TEST_F(ProcessDownloadOnPosix, KilledAtAnyMomentLeavesNoBadFile) {
  std::mt19937 random(20);  // the same moments each time, as far as the system allows
  std::uniform_int_distribution<int> microseconds(0, 30000);
  int killed = 0;
  for (int i = 0; i < 100; ++i) {
    const pid_t child = startDownload(chain("brisk"));
    std::this_thread::sleep_for(std::chrono::microseconds(microseconds(random)));
    kill(child, SIGKILL);
    killed += resultOf(child) == -1 ? 1 : 0;
    expectOnlyGoodFiles("a");
    expectOnlyGoodFiles("b");
    if (i % 4 == 0)  // else most would find what an earlier one brought
      std::filesystem::remove_all(at("a/tiny64.pdb"));
    if (i % 4 == 2)
      std::filesystem::remove_all(at("b/tiny64.pdb"));
  }
  EXPECT_GT(killed, 30);
  EXPECT_EQ(resultOf(startDownload(chain("brisk"))), 0);
  expectOnlyGoodFiles("a");
}

TEST_F(ProcessDownloadOnPosix, ManyForOneKeyEndWithOneGoodFile) {
  std::vector<pid_t> children;
  for (int i = 0; i < 8; ++i) children.push_back(startDownload(chain("brisk")));
  for (const pid_t child : children) EXPECT_EQ(resultOf(child), 0);
  EXPECT_THAT(filesIn("a"), ElementsAre(key()));
  EXPECT_THAT(filesIn("b"), ElementsAre(key()));
  EXPECT_EQ(contentOf(at("a/" + key())), contentOf(realFile("tiny64.pdb")));
}

TEST_F(ProcessDownloadOnPosix, AFullDiskLeavesNothing) {
  const pid_t child = startChild([this] {
    signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{20000, 20000};
    if (setrlimit(RLIMIT_FSIZE, &limit) != 0)
      return 2;
    return obtain({chain("good")}).empty() && obtain({chain("compressed")}).empty() ? 0 : 1;
  });
  EXPECT_EQ(resultOf(child), 0);
  EXPECT_THAT(filesIn("a"), IsEmpty());
  EXPECT_THAT(filesIn("b"), IsEmpty());
}

}  // namespace
}  // namespace symsrv_1_0::internal
