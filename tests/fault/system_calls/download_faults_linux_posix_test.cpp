// Downloads while system calls fail: from a directory, of a cabinet there, and from a server.

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <system_error>

#include <gtest/gtest.h>

#include "paku/text_encoding.h"
#include "symsrv/download_fixture_test_support.h"
#include "symsrv/files.h"
#include "symsrv/helper.h"

#include "fault/system_calls/faulty_runs.h"
#include "fault/system_calls/runs_tree.h"
#include "support/scoped_environment.h"
#include "support/temp_tree.h"

namespace quiver_test {
namespace {

namespace fs = std::filesystem;
using namespace symsrv_1_0;
using namespace symsrv_1_0::internal;

constexpr const char* kName = "tiny64.pdb";
constexpr const char* kCompressedName = "tiny64.pd_";

/// Empty for what is not there. In one piece, since each run reads all that lies in the stores.
std::string bytesOf(const fs::path& path) {
  std::error_code missing;
  const std::uintmax_t size = fs::file_size(path, missing);
  std::string bytes(missing ? 0 : static_cast<std::size_t>(size), '\0');
  std::ifstream(path, std::ios::binary)
      .read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  return bytes;
}

std::string key(const std::string& name) {
  std::string guid = bytesOf(realFile("tiny64.guid"));
  std::erase_if(guid, [](char c) { return c == '-' || c == '\n'; });
  return std::string(kName) + "/" + guid + "1/" + name;
}

/// Where the file comes from.
struct Source {
  const char* title;
  const char* file;     ///< In a directory. Null for a server,
  const char* way;      ///< which behaves like this.
  bool isFirstRequest;  ///< Of the process: the transport's libraries are made ready with it.
};

class Download final : public FaultyCall {
 public:
  Download(const Source& source, const std::string& server)
      : m_source(source),
        m_server(server),
        m_right(bytesOf(realFile(kName))),
        m_compressed(bytesOf(realFile(kCompressedName))) {}

  void prepare() override {
    m_tree.emplace();
    m_settings.defaultStore = path("default");
    // Far beyond what a loaded machine takes.
    m_settings.limits.connect = std::chrono::seconds(20);
    m_settings.limits.firstByte = std::chrono::seconds(20);
    m_settings.limits.slowWindow = std::chrono::seconds(20);
    m_settings.limits.betweenTries = std::chrono::milliseconds(1);
    if (m_source.file)
      m_tree->addFile("store/" + key(m_source.file), bytesOf(realFile(m_source.file)));
  }

  void ask() override {
    m_path.clear();
    if (!m_helper) {
      // Directories need no transport, and making one takes most of the time of a run.
      m_helper = new SymSrvHelper(m_settings, m_source.file ? nullptr : makeTransport(), nullptr);
      m_helper->addServer(element().c_str());
    }
    const std::wstring binary = PAKU_3_1::decode(realFile("tiny64.exe"));
    if (const auto file = m_helper->download(binary.c_str(), nullptr))
      m_path = file->getPath();
  }

  Answer answer() override {
    if (m_path.empty())
      return Answer::kNothing;
    return bytesOf(m_path) == m_right ? Answer::kRight : Answer::kWrong;
  }

  std::string complaint(const FaultScript& script) override {
    for (const char* store : {"near", "far", "default"})
      for (const auto& entry : entriesOf(store)) {
        const std::string text = complaintOf(entry, script.struckRemovals != 0);
        if (!text.empty())
          return text + ": " + entry.path().string();
      }
    return {};
  }

  /// Servers that failed are left alone for long, also when the failure was ours.
  void recover(const FaultScript& script) override {
    if (script.struckTransfers != 0)
      m_helper = nullptr;
  }

  std::string laterComplaint() override {
    return bytesOf(path("near/" + key(kName))) == m_right ? "" : "not in the nearest store";
  }

  void release() override {
    m_helper = nullptr;
    m_tree.reset();
  }

 private:
  std::string path(const std::string& name) const {
    return NativePath(m_tree->path(name)).get().string();
  }

  std::wstring element() const {
    const std::string from = m_source.file ? path("store") : m_server + "/~faults/" + m_source.way;
    return PAKU_3_1::decode("srv*" + path("near") + "*" + path("far") + "*" + from);
  }

  fs::recursive_directory_iterator entriesOf(const char* store) const {
    const fs::path root = path(store);
    return fs::exists(root) ? fs::recursive_directory_iterator(root)
                            : fs::recursive_directory_iterator();
  }

  std::string complaintOf(const fs::directory_entry& entry, bool mayBeLeft) const {
    const std::string name = entry.path().filename().string();
    if (entry.is_directory())
      return {};
    if (isTemporaryName(name))
      return mayBeLeft ? "" : "left behind";
    if (entry.path().extension() == ".miss")
      return "remembered as missing";
    if (name == kName)
      return bytesOf(entry.path()) == m_right ? "" : "a wrong file";
    if (name == kCompressedName)
      return bytesOf(entry.path()) == m_compressed ? "" : "a wrong cabinet";
    return name == "swept" ? "" : "not expected there";
  }

  const Source& m_source;
  const std::string m_server;
  const std::string m_right;
  const std::string m_compressed;
  Settings m_settings;
  std::optional<TempTree> m_tree;
  QV_2_9::ObjectPtr<ISymSrvHelper> m_helper;
  std::wstring m_path;
};

class DownloadFaultInjectionLinux : public testing::TestWithParam<Source> {
 protected:
  RunsTree m_tree;
  ScopedVariable m_noProxy{"no_proxy", "*"};
};

TEST_P(DownloadFaultInjectionLinux, BringsTheRightFileOrNone) {
  std::unique_ptr<LoopbackServer> server;
  std::string address;
  if (!GetParam().file) {
    server = startLoopbackServer({});
    ASSERT_TRUE(server && !server->port().empty());
    address = "http://127.0.0.1:" + server->port();
    if (!GetParam().isFirstRequest)
      makeTransport();
  }
  Download download(GetParam(), address);
  FaultyRuns runs{GetParam().title};
  runs.isSteady = GetParam().file != nullptr;
  runWithFaults(runs, download);
}

INSTANTIATE_TEST_SUITE_P(Sources,
                         DownloadFaultInjectionLinux,
                         testing::Values(Source{"ADirectory", kName, nullptr, false},
                                         Source{"ACabinet", kCompressedName, nullptr, false},
                                         Source{"AServer", nullptr, "good", true},
                                         Source{"ACabinetOnAServer", nullptr, "compressed", false}),
                         [](const auto& row) { return std::string(row.param.title); });

}  // namespace
}  // namespace quiver_test
