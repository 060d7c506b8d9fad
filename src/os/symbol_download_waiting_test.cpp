// Who waits while a symbol file is downloaded, and who does not.

#include <algorithm>
#include <atomic>
#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "os/symbol_download.h"
#include "quiver/ref_count.h"

namespace QV_2_9::internal {
namespace {

using symsrv_1_0::ISymbolFileInfo;

/// For a test that fails; others end when the test lets the download go on.
constexpr std::chrono::seconds kPatience{20};

class NamedFile final : public RefCountImpl<ISymbolFileInfo> {
 public:
  explicit NamedFile(std::wstring path) : m_path(std::move(path)) {}
  const wchar_t* getPath() override { return m_path.c_str(); }

 private:
  std::wstring m_path;
};

struct Shared {
  std::atomic<bool> mayGoOn{false};
  std::atomic<int> running{0};
  std::atomic<int> most{0};
  std::atomic<int> downloads{0};
};

Shared* g_shared = nullptr;

/// Downloads for as long as the test wants, and knows of the binary "/near" without.
class SlowHelper final : public RefCountImpl<symsrv_1_0::ISymSrvHelper> {
 public:
  void addServer(const wchar_t*) override {}
  void clearServers() override {}
  ObjectPtr<ISymbolFileInfo> download(const wchar_t* binaryFile,
                                      symsrv_1_0::IDownloadProgressCallback* progress) override {
    bool isCanceled = false;
    progress->onStart(1, &isCanceled);
    ++g_shared->downloads;
    g_shared->most = std::max<int>(g_shared->most, ++g_shared->running);
    const auto end = std::chrono::steady_clock::now() + kPatience;
    while (!g_shared->mayGoOn && std::chrono::steady_clock::now() < end)
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    --g_shared->running;
    return new NamedFile(std::wstring(L"/downloaded") + binaryFile);
  }
  bool findNear(const wchar_t* binaryFile,
                const wchar_t* const* elements,
                std::int32_t count,
                symsrv_1_0::IStoreWatcher*,
                ObjectPtr<ISymbolFileInfo>* file) override {
    EXPECT_EQ(count, 1);
    EXPECT_STREQ(elements[0], L"srv*b");
    const std::wstring binary = binaryFile;
    if (binary == L"/near")
      *file = new NamedFile(L"/near.pdb");
    return binary == L"/near" || binary == L"/nowhere";
  }
};

/// A download is under way when a test begins.
class DuringADownload : public ::testing::Test {
 protected:
  DuringADownload() {
    g_shared = &m_shared;
    setSymSrvHelperFactoryForTest(
        []() -> ObjectPtr<symsrv_1_0::ISymSrvHelper> { return new SlowHelper; });
    m_thread = std::thread([this] {
      EXPECT_EQ(m_download.fetch(L"/first", {L"srv*a"}, nullptr), L"/downloaded/first");
    });
    while (m_shared.running == 0) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  ~DuringADownload() override {
    finish();
    setSymSrvHelperFactoryForTest(nullptr);
    g_shared = nullptr;
  }

  void finish() {
    m_shared.mayGoOn = true;
    if (m_thread.joinable())
      m_thread.join();
  }
  bool isUnderWay() const { return m_shared.running == 1; }

  std::wstring fetch(const wchar_t* binary) {
    return m_download.fetch(binary, {L"plain", L"srv*b"}, nullptr);
  }

  Shared m_shared;
  SymbolDownload m_download;
  std::thread m_thread;
};

TEST_F(DuringADownload, LookupsWithoutServersDoNotWait) {
  EXPECT_EQ(m_download.fetch(L"/b", {L"/plain"}, nullptr), L"");
  EXPECT_EQ(m_download.fetch(L"/b", {}, nullptr), L"");
  EXPECT_TRUE(isUnderWay());
}

TEST_F(DuringADownload, WhatLiesNearIsHadAtOnce) {
  EXPECT_EQ(fetch(L"/near"), L"/near.pdb");
  EXPECT_EQ(fetch(L"/nowhere"), L"");
  EXPECT_TRUE(isUnderWay());
}

TEST_F(DuringADownload, OtherDownloadsWaitForTheirTurn) {
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i)
    threads.emplace_back([this] { EXPECT_EQ(fetch(L"/far"), L"/downloaded/far"); });
  EXPECT_TRUE(isUnderWay());
  finish();
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(m_shared.most, 1);
  EXPECT_EQ(m_shared.downloads, 5);
}

TEST_F(DuringADownload, AnotherOneOnTheSameThreadDoesNotWaitForItself) {
  finish();
  class Asker final : public ISymbolDownloadProgress {
   public:
    explicit Asker(SymbolDownload& download) : m_download(download) {}
    void start(std::int32_t) override {
      m_nested = m_download.fetch(L"/nested", {L"srv*b"}, nullptr);
    }
    void progress(std::int32_t) override {}
    void finish() override {}
    bool isCanceled() override { return false; }

    SymbolDownload& m_download;
    std::wstring m_nested;
  } asker(m_download);
  EXPECT_EQ(m_download.fetch(L"/second", {L"srv*a"}, &asker), L"/downloaded/second");
  EXPECT_EQ(asker.m_nested, L"/downloaded/nested");
}

}  // namespace
}  // namespace QV_2_9::internal
