// Downloads at the same time: who waits for whom, and that nobody waits for himself.

#include <atomic>
#include <functional>
#include <thread>

#include <gmock/gmock.h>

#include "symsrv/download_fixture_test_support.h"
#include "symsrv/downloader.h"
#include "symsrv/files.h"

namespace symsrv_1_0::internal {
namespace {

using std::chrono::milliseconds;
using ::testing::EndsWith;
using ::testing::SizeIs;

/// Does something when the download begins, and ends it when told to.
class Caller final : public IDownloadProgressCallback {
 public:
  explicit Caller(std::function<void()> work = {}) : m_work(std::move(work)) {}

  void onStart(int, bool* cancel) override {
    m_isStarted = true;
    if (m_work)
      m_work();
    *cancel = m_isCanceled;
  }
  void onProgress(int, bool* cancel) override { *cancel = m_isCanceled; }
  void onFinish() override {}

  void waitForStart() const {
    while (!m_isStarted) std::this_thread::sleep_for(milliseconds(5));
  }

  std::atomic<bool> m_isCanceled{false};

 private:
  std::function<void()> m_work;
  std::atomic<bool> m_isStarted{false};
};

class ConcurrentDownload : public DownloadFixture {
 protected:
  ConcurrentDownload() { serve(); }

  std::string chain(const std::string& way, const std::string& cache = "cache") const {
    return "srv*" + at(cache) + "*" + address(way);
  }

  std::string get(const std::string& element,
                  IDownloadProgressCallback* caller,
                  const std::string& binary = "tiny64.exe") {
    ChainList list;
    EXPECT_EQ(list.add(element, m_settings.defaultStore), "");
    const SoughtResult sought = soughtFileOf(*FileSource::open(realFile(binary)), binary);
    Progress progress(caller);
    return m_downloader.obtain(list.chains(), *sought.file, progress);
  }

  Downloader m_downloader{m_settings, makeTransport(), {}};
};

/// One thread asks a server that keeps silent until the test ends.
class BesideASilentServer : public ConcurrentDownload {
 protected:
  BesideASilentServer()
      : m_thread([this] {
          EXPECT_EQ(get(chain("hang-in-body", "silent"), &m_silent), "");
          m_isOver = true;
        }) {
    m_silent.waitForStart();
  }
  ~BesideASilentServer() override {
    EXPECT_FALSE(m_isOver) << "the test waited for the silent server";
    m_silent.m_isCanceled = true;
    m_thread.join();
  }

 private:
  Caller m_silent;
  std::atomic<bool> m_isOver{false};
  std::thread m_thread;
};

TEST_F(BesideASilentServer, DirectoriesAreLookedAtForTheSameFile) {
  file("near", "tiny64.pdb");
  EXPECT_EQ(get("srv*" + at("near"), nullptr), at("near/" + key()));
  EXPECT_EQ(get("srv*" + at("copy") + "*" + at("near"), nullptr), at("copy/" + key()));
}

TEST_F(BesideASilentServer, OtherServersAreAskedForTheSameFile) {
  EXPECT_EQ(get(chain("good"), nullptr), at("cache/" + key()));
}

TEST_F(BesideASilentServer, ServersAreAskedForOtherFiles) {
  EXPECT_EQ(get(chain("missing"), nullptr, "tiny32.exe"), "");
}

TEST_F(BesideASilentServer, WhoWaitsForTheSameAnswerMayGiveUp) {
  Caller impatient;
  impatient.m_isCanceled = true;
  EXPECT_EQ(get(chain("hang-in-body", "silent"), &impatient), "");
}

TEST_F(ConcurrentDownload, ACallerThatAsksForTheSameFileAgainGetsNone) {
  std::string nested = "not asked";
  Caller caller([&] { nested = get(chain("steady"), nullptr); });
  EXPECT_EQ(get(chain("steady"), &caller), at("cache/" + key()));
  EXPECT_EQ(nested, "");
  EXPECT_THAT(requests(), SizeIs(2)) << "the tiers and the file";
}

TEST_F(ConcurrentDownload, ACallerMayAskForAnotherFile) {
  std::string nested;
  Caller caller([&] { nested = get(chain("steady"), nullptr, "tiny32.exe"); });
  EXPECT_EQ(get(chain("steady"), &caller), at("cache/" + key()));
  EXPECT_THAT(nested, EndsWith("tiny32.pdb"));
}

TEST_F(ConcurrentDownload, CallersThatAskForEachOthersFilesDoNotWaitForEver) {
  std::atomic<int> started{0};
  const auto meet = [&] {
    ++started;
    while (started < 2) std::this_thread::sleep_for(milliseconds(5));
  };
  std::string first;
  Caller a([&] { meet(), get(chain("steady"), nullptr, "tiny32.exe"); });
  Caller b([&] { meet(), get(chain("steady"), nullptr, "tiny64.exe"); });
  std::thread thread([&] { first = get(chain("steady"), &a, "tiny64.exe"); });
  EXPECT_THAT(get(chain("steady"), &b, "tiny32.exe"), EndsWith("tiny32.pdb"));
  thread.join();
  EXPECT_EQ(first, at("cache/" + key()));
}

}  // namespace
}  // namespace symsrv_1_0::internal
