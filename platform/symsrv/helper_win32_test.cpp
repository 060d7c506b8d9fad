// Stores on drives without a disk ask nobody for one.

#include <windows.h>
#include <vector>

#include <gmock/gmock.h>

#include "paku/text_encoding.h"
#include "symsrv/download_fixture_test_support.h"

#include "support/scoped_error_mode_win32.h"

namespace symsrv_1_0::internal {
namespace {

using quiver_test::ScopedErrorMode;
using ::testing::Each;
using ::testing::SizeIs;
using ::testing::Truly;

/// Notes the thread's mode whenever a store has answered.
class ModeRecorder final : public IDownloadProgressCallback, public IStoreWatcher {
 public:
  void onStart(int, bool*) override {}
  void onProgress(int, bool*) override {}
  void onFinish() override {}
  IStoreWatcher* storeWatcher() override { return this; }
  void onStore(const StoreReport&) override { m_modes.push_back(GetThreadErrorMode()); }

  std::vector<DWORD> m_modes;
};

bool isQuiet(DWORD mode) {
  return (mode & SEM_FAILCRITICALERRORS) != 0;
}

class QuietHelperOnWindows : public DownloadFixture {
 protected:
  const ScopedErrorMode m_before{0};
  const QV_2_9::ObjectPtr<ISymSrvHelper> m_quiet{new SymSrvHelper(m_settings, nullptr, {})};
  const std::wstring m_element = L"srv*" + PAKU_3_1::decode(at("a"));
  const std::wstring m_binary = PAKU_3_1::decode(realFile("tiny64.exe"));
  ModeRecorder m_recorder;
};

TEST_F(QuietHelperOnWindows, DownloadsWithoutMessageBoxes) {
  m_quiet->addServer(m_element.c_str());
  EXPECT_FALSE(m_quiet->download(m_binary.c_str(), &m_recorder));
  EXPECT_THAT(m_recorder.m_modes, AllOf(SizeIs(1), Each(Truly(isQuiet))));
  EXPECT_EQ(GetThreadErrorMode(), 0u);
}

TEST_F(QuietHelperOnWindows, LooksNearWithoutMessageBoxes) {
  const wchar_t* const elements[] = {m_element.c_str()};
  QV_2_9::ObjectPtr<ISymbolFileInfo> file;
  EXPECT_TRUE(m_quiet->findNear(m_binary.c_str(), elements, 1, &m_recorder, &file));
  EXPECT_THAT(m_recorder.m_modes, AllOf(SizeIs(1), Each(Truly(isQuiet))));
  EXPECT_EQ(GetThreadErrorMode(), 0u);
}

TEST(QuietLoadingOnWindows, LeavesTheModeAsItWas) {
  const ScopedErrorMode before(0);
  static_cast<void>(ISymSrvHelper::create());
  EXPECT_EQ(GetThreadErrorMode(), 0u);
}

}  // namespace
}  // namespace symsrv_1_0::internal
