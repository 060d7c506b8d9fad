// Downloads in a tree of a test's own, from a server that does as it is told.

#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "symsrv/helper.h"

#include "support/scoped_environment.h"
#include "support/temp_tree.h"

namespace symsrv_1_0::internal {

/// What a store answered; texts as the module's own.
struct RecordedStore {
  std::string store;
  std::string place;
  std::string identity;
  StoreOutcome outcome;
  std::string detail;
  std::int64_t bytes;
};

/// Records calls, and cancels or throws when told to.
class ProgressRecorder final : public IDownloadProgressCallback, public IStoreWatcher {
 public:
  void onStart(int value, bool* cancel) override;
  void onProgress(int value, bool* cancel) override;
  void onFinish() override { ++m_finished; }
  IStoreWatcher* storeWatcher() override { return m_isWatching ? this : nullptr; }
  void onStore(const StoreReport& report) override;

  int m_started = 0;
  int m_finished = 0;
  int m_size = -1;
  int m_last = -1;
  int m_cancelAfter = -1;  ///< Calls; -1: never.
  int m_throwAfter = -1;
  bool m_isWatching = false;
  std::vector<RecordedStore> m_stores;

 private:
  void count(bool* cancel);

  int m_calls = 0;
};

/// A server of the test's own; each system starts it as it can.
class LoopbackServer {
 public:
  virtual ~LoopbackServer() = default;
  /// Returns the port as text. Empty when the server did not start.
  virtual std::string port() const = 0;
};

/// Returns null when this system cannot.
std::unique_ptr<LoopbackServer> startLoopbackServer(const std::string& certificate);

std::string realFile(const std::string& name);
std::string contentOf(const std::string& path);

class DownloadFixture : public ::testing::Test {
 protected:
  DownloadFixture();
  ~DownloadFixture() override;

  /// Starts the server, or uses the one that the environment names in SYMSRV_SERVER. `certificate`
  /// is a pair of files "NAME.pem" and "NAME.key" for https.
  void serve(const std::string& certificate = {});

  /// Returns the address of a way in which the server may behave.
  std::string address(const std::string& way, const std::string& userInfo = {}) const;

  /// Returns the path below the tree.
  std::string at(const std::string& name) const;

  /// Downloads through the helper, which remembers until `forget`.
  std::string obtain(const std::vector<std::string>& elements,
                     const std::string& binary = "tiny64.exe");
  std::string obtainFrom(const std::string& way, const std::string& binary = "tiny64.exe");
  void forget() { m_helper = nullptr; }

  /// Puts a real file into a store under its key.
  void file(const std::string& store, const std::string& name, const std::string& as = {});

  /// Returns the files below a folder, by their paths, without what is remembered of misses.
  std::vector<std::string> filesIn(const std::string& folder) const;
  std::vector<std::string> requests() const;
  std::string reports() const;

  /// Returns the place of tiny64.pdb in a store of one tier.
  static std::string key(const std::string& name = "tiny64.pdb");

  quiver_test::TempTree m_tree;
  Settings m_settings;
  ProgressRecorder m_progress;
  std::vector<std::string> m_reports;

 private:
  quiver_test::ScopedVariable m_noProxy{"no_proxy", "*"};
  std::string m_root;
  std::string m_word;  // that the server knows this test by
  std::unique_ptr<LoopbackServer> m_server;
  std::string m_origin;
  QV_2_9::ObjectPtr<ISymSrvHelper> m_helper;
};

}  // namespace symsrv_1_0::internal
