// The helper as the library uses it.

#include "symsrv/helper.h"

#include <functional>

#include <gmock/gmock.h>

#include "paku/text_encoding.h"
#include "symsrv/download_fixture_test_support.h"

namespace symsrv_1_0::internal {
namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::IsEmpty;

/// Does something whenever a store is reported.
class BusyWatcher final : public IDownloadProgressCallback, public IStoreWatcher {
 public:
  explicit BusyWatcher(std::function<void()> work) : m_work(std::move(work)) {}

  void onStart(int, bool*) override {}
  void onProgress(int, bool*) override {}
  void onFinish() override {}
  IStoreWatcher* storeWatcher() override { return this; }
  void onStore(const StoreReport&) override { m_work(); }

 private:
  std::function<void()> m_work;
};

class Helper : public DownloadFixture {
 protected:
  void add(const std::string& element) { m_helper->addServer(PAKU_3_1::decode(element).c_str()); }
  std::string download(IDownloadProgressCallback* callback) {
    const auto file =
        m_helper->download(PAKU_3_1::decode(realFile("tiny64.exe")).c_str(), callback);
    std::string path;
    return file && PAKU_3_1::encode(file->getPath(), path) ? path : std::string();
  }

  const QV_2_9::ObjectPtr<ISymSrvHelper> m_helper{
      new SymSrvHelper(m_settings, makeTransport(), {})};
};

TEST_F(Helper, UsesTheServersThatWereRegisteredWhenADownloadBegan) {
  file("a", "tiny64.pdb");
  BusyWatcher watcher([this] { m_helper->clearServers(); });
  for (const char* refused : {"", "srv*ftp://host"}) {
    add(refused);
    add("srv*" + at("missing"));
    add("srv*" + at("a"));
    EXPECT_EQ(download(&watcher), at("a/" + key())) << refused;
  }
}

/// Answers without servers and copies.
class HelperNear : public Helper {
 protected:
  HelperNear() { m_progress.m_isWatching = true; }

  /// Returns the path, "none", or "undecided".
  std::string near(const std::string& element, const std::string& binary = "tiny64.exe") {
    const std::wstring text = PAKU_3_1::decode(element);
    const wchar_t* const elements[] = {L"srv*ftp://host", text.c_str()};
    QV_2_9::ObjectPtr<ISymbolFileInfo> file;
    const std::wstring name = PAKU_3_1::decode(realFile(binary));
    if (!m_helper->findNear(name.c_str(), elements, 2, &m_progress, &file))
      return "undecided";
    std::string path;
    return file && PAKU_3_1::encode(file->getPath(), path) ? path : "none";
  }

  std::vector<StoreOutcome> outcomes() const {
    std::vector<StoreOutcome> all;
    for (const RecordedStore& store : m_progress.m_stores) all.push_back(store.outcome);
    return all;
  }
};

TEST_F(HelperNear, FindsWhatLiesInTheNearestStore) {
  file("a", "tiny64.pdb");
  EXPECT_EQ(near("srv*" + at("a") + "*https://host.invalid/x"), at("a/" + key()));
  EXPECT_THAT(outcomes(), ElementsAre(StoreOutcome::kLeftAlone, StoreOutcome::kFound));
  EXPECT_EQ(m_progress.m_stores.back().place, at("a/" + key()));
}

TEST_F(HelperNear, VerifiesItToo) {
  file("a", "other/tiny64.pdb");
  EXPECT_EQ(near("srv*" + at("a")), "none");
  EXPECT_THAT(outcomes(), ElementsAre(StoreOutcome::kLeftAlone, StoreOutcome::kMismatch));
}

TEST_F(HelperNear, LeavesServersAndCopiesToADownloadAndSaysNothing) {
  serve();
  file("b", "tiny64.pdb");
  file("c", "tiny64.pd_", key("tiny64.pd_"));
  EXPECT_EQ(near("srv*" + at("a") + "*" + address("good")), "undecided");
  EXPECT_EQ(near("srv*" + at("a") + "*" + at("b")), "undecided");
  EXPECT_EQ(near("srv*" + at("c")), "undecided");
  EXPECT_THAT(outcomes(), IsEmpty());
  EXPECT_THAT(requests(), IsEmpty());
  EXPECT_THAT(filesIn("a"), IsEmpty());
}

TEST_F(HelperNear, KnowsWhoIsNotAskedAgain) {
  serve();
  for (const char* way : {"missing", "e500"}) {
    const std::string element = "srv*" + at("a") + "*" + address(way);
    EXPECT_EQ(near(element), "undecided");
    m_helper->clearServers();
    add(element);
    EXPECT_EQ(download(nullptr), "");
    EXPECT_EQ(near(element), "none");
    EXPECT_EQ(outcomes().back(), StoreOutcome::kLeftAlone);
  }
}

TEST_F(HelperNear, SaysWhyABinaryAsksForNothing) {
  EXPECT_EQ(near("srv*" + at("a"), "absent.exe"), "none");
  ASSERT_EQ(m_progress.m_stores.size(), 1u);
  EXPECT_THAT(m_progress.m_stores[0].detail, EndsWith("absent.exe: cannot be read"));
}

}  // namespace
}  // namespace symsrv_1_0::internal
