// What the helper is told, and what it is not.

#include "os/symbol_download.h"

#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "quiver/ref_count.h"
#include "support/scoped_environment.h"

namespace QV_2_9::internal {
namespace {

using quiver_test::ScopedVariable;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

struct Record {
  std::vector<std::wstring> calls;
  int helpers = 0;
  bool hasHelper = true;
  bool hasFile = true;
  bool presetCancel = false;
  bool lastCancel = false;
  int throwAt = 0;
};

Record* g_record = nullptr;

class FakeFile final : public RefCountImpl<symsrv_1_0::ISymbolFileInfo> {
 public:
  const wchar_t* getPath() override { return L"/cache/a.pdb"; }
};

class FakeHelper final : public RefCountImpl<symsrv_1_0::ISymSrvHelper> {
 public:
  void addServer(const wchar_t* element) override {
    g_record->calls.push_back(L"add " + std::wstring(element));
  }
  void clearServers() override { g_record->calls.emplace_back(L"clear"); }
  ObjectPtr<symsrv_1_0::ISymbolFileInfo> download(
      const wchar_t* binaryFile, symsrv_1_0::IDownloadProgressCallback* progress) override {
    g_record->calls.push_back(L"download " + std::wstring(binaryFile));
    if (symsrv_1_0::IStoreWatcher* watcher = progress->storeWatcher())
      watcher->onStore({L"", L"", L"", symsrv_1_0::StoreOutcome::kMissing, L"asked", 0});
    bool cancel = g_record->presetCancel;
    progress->onStart(7, &cancel);
    progress->onProgress(3, &cancel);
    progress->onFinish();
    g_record->lastCancel = cancel;
    return g_record->hasFile ? ObjectPtr<symsrv_1_0::ISymbolFileInfo>(new FakeFile) : nullptr;
  }
};

class ReasonRecorder final : public symsrv_1_0::IStoreWatcher {
 public:
  std::vector<std::wstring> reasons;

  void onStore(const symsrv_1_0::StoreReport& report) override {
    reasons.emplace_back(report.detail);
  }
};

class FakeProgress final : public ISymbolDownloadProgress {
 public:
  void start(std::int32_t value) override { note("start " + std::to_string(value)); }
  void progress(std::int32_t value) override { note("progress " + std::to_string(value)); }
  void finish() override { note("finish"); }
  bool isCanceled() override {
    note("asked");
    return m_cancel;
  }

  bool m_cancel = false;
  bool m_throws = false;
  std::vector<std::string> m_calls;

 private:
  void note(std::string call) {
    if (m_throws)
      throw std::runtime_error("enough");
    m_calls.push_back(std::move(call));
  }
};

class SymbolDownloadTest : public ::testing::Test {
 protected:
  SymbolDownloadTest() {
    g_record = &m_record;
    setSymSrvHelperFactoryForTest([]() -> ObjectPtr<symsrv_1_0::ISymSrvHelper> {
      ++g_record->helpers;
      return g_record->hasHelper ? new FakeHelper : nullptr;
    });
  }
  ~SymbolDownloadTest() override {
    setSymSrvHelperFactoryForTest(nullptr);
    g_record = nullptr;
  }

  std::wstring fetch(const std::vector<std::wstring>& elements) {
    return m_download.fetch(L"/b/a.dll", elements, &m_progress);
  }

  Record m_record;
  FakeProgress m_progress;
  SymbolDownload m_download;
};

TEST_F(SymbolDownloadTest, RegistersServersInOrderAndIgnoresOtherElements) {
  EXPECT_EQ(fetch({L"c:\\sym", LR"(SRV*c:\cache)", L"srv", L"SymSrv*x", L"cache*y", L""}),
            L"/cache/a.pdb");
  EXPECT_THAT(m_record.calls,
              ElementsAre(LR"(add SRV*c:\cache)", L"add SymSrv*x", L"download /b/a.dll"));
}

TEST_F(SymbolDownloadTest, MakesOneHelperAndClearsItBeforeEachFurtherDownload) {
  fetch({L"srv*a"});
  fetch({L"srv*b"});
  EXPECT_EQ(m_record.helpers, 1);
  EXPECT_THAT(
      m_record.calls,
      ElementsAre(
          L"add srv*a", L"download /b/a.dll", L"clear", L"add srv*b", L"download /b/a.dll"));
}

TEST_F(SymbolDownloadTest, ClearsAnExistingHelperEvenWhenNoServerFollows) {
  fetch({L"srv*a"});
  m_record.calls.clear();
  EXPECT_EQ(fetch({L"/plain"}), L"");
  EXPECT_THAT(m_record.calls, ElementsAre(L"clear"));
}

TEST_F(SymbolDownloadTest, TellsAWatcherWhyNoServerIsAsked) {
  ReasonRecorder watcher;
  m_download.fetch(L"", {L"srv*a"}, nullptr, &watcher);
  m_record.hasHelper = false;
  m_download.fetch(L"/b/a.dll", {L"srv*a"}, nullptr, &watcher);
  EXPECT_THAT(watcher.reasons,
              ElementsAre(L"the binary is not known", L"there is no module for symbol servers"));
}

TEST_F(SymbolDownloadTest, TellsAWatcherNothingWithoutAServer) {
  ReasonRecorder watcher;
  m_download.fetch(L"", {L"/plain"}, nullptr, &watcher);
  m_download.fetch(L"/b/a.dll", {L"/plain"}, nullptr, &watcher);
  EXPECT_THAT(watcher.reasons, IsEmpty());
}

TEST_F(SymbolDownloadTest, LetsTheHelperTellTheWatcherOfStores) {
  ReasonRecorder watcher;
  m_download.fetch(L"/b/a.dll", {L"srv*a"}, nullptr, &watcher);
  EXPECT_THAT(watcher.reasons, ElementsAre(L"asked"));
}

TEST_F(SymbolDownloadTest, MakesNoHelperWithoutAServer) {
  EXPECT_EQ(fetch({}), L"");
  EXPECT_EQ(fetch({L"/plain", L"srv"}), L"");
  EXPECT_EQ(m_record.helpers, 0);
}

TEST_F(SymbolDownloadTest, EmptyBinaryNamesAreReturnedAtOnce) {
  fetch({L"srv*a"});
  m_record.calls.clear();
  EXPECT_EQ(m_download.fetch(nullptr, {L"srv*a"}, nullptr), L"");
  EXPECT_EQ(m_download.fetch(L"", {L"srv*a"}, nullptr), L"");
  EXPECT_THAT(m_record.calls, IsEmpty());
}

TEST_F(SymbolDownloadTest, WithoutAHelperThereIsNoFile) {
  m_record.hasHelper = false;
  EXPECT_EQ(fetch({L"srv*a", L"srv*b"}), L"");
  EXPECT_EQ(m_record.helpers, 1);
  m_record.hasHelper = true;
  EXPECT_EQ(fetch({L"srv*a"}), L"/cache/a.pdb");
}

TEST_F(SymbolDownloadTest, NothingObtainedIsAnEmptyPath) {
  m_record.hasFile = false;
  EXPECT_EQ(fetch({L"srv*a"}), L"");
}

TEST_F(SymbolDownloadTest, PassesProgressOnOneToOne) {
  fetch({L"srv*a"});
  EXPECT_THAT(m_progress.m_calls, ElementsAre("start 7", "asked", "progress 3", "asked", "finish"));
  EXPECT_FALSE(m_record.lastCancel);
  m_progress.m_cancel = true;
  fetch({L"srv*a"});
  EXPECT_TRUE(m_record.lastCancel);
}

TEST_F(SymbolDownloadTest, WithoutAProgressObjectTheWishToCancelIsLeftAsItIs) {
  m_record.presetCancel = true;
  m_download.fetch(L"/b/a.dll", {L"srv*a"}, nullptr);
  EXPECT_TRUE(m_record.lastCancel);
}

TEST_F(SymbolDownloadTest, WithAProgressObjectTheWishIsReplaced) {
  m_record.presetCancel = true;
  fetch({L"srv*a"});
  EXPECT_FALSE(m_record.lastCancel);
}

TEST_F(SymbolDownloadTest, ExceptionsPassThroughAndLeaveTheLockFree) {
  m_progress.m_throws = true;
  EXPECT_THROW(fetch({L"srv*a"}), std::runtime_error);
  m_progress.m_throws = false;
  std::wstring path;
  std::thread([&] { path = fetch({L"srv*a"}); }).join();
  EXPECT_EQ(path, L"/cache/a.pdb");
}

TEST_F(SymbolDownloadTest, TheEnvironmentsElementsAreReadAnew) {
  ScopedVariable variable("_NT_SYMBOL_PATH", R"(c:\sym;srv*c:\cache)");
  EXPECT_EQ(m_download.fetchFromEnvironment(L"/b/a.dll", nullptr), L"/cache/a.pdb");
  EXPECT_THAT(m_record.calls, ElementsAre(LR"(add srv*c:\cache)", L"download /b/a.dll"));
  variable.unset();
  EXPECT_EQ(m_download.fetchFromEnvironment(L"/b/a.dll", nullptr), L"");
}

TEST(SymSrvHelperOfTests, IsNotThereWithoutItsModule) {
  SymbolDownload download;
  EXPECT_EQ(download.fetch(L"/b/a.dll", {L"srv*/cache"}, nullptr), L"");
}

}  // namespace
}  // namespace QV_2_9::internal
