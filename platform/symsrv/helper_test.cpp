// The helper as the library uses it.

#include "symsrv/helper.h"

#include <functional>

#include <gmock/gmock.h>

#include "paku/text_encoding.h"
#include "symsrv/download_fixture_test_support.h"

namespace symsrv_1_0::internal {
namespace {

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

}  // namespace
}  // namespace symsrv_1_0::internal
