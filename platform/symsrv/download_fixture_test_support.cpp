// Downloads for tests.

#include "symsrv/download_fixture_test_support.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "paku/text_encoding.h"

namespace symsrv_1_0::internal {
namespace {

namespace fs = std::filesystem;
using std::chrono::milliseconds;

std::string utf8(const std::wstring& text) {
  std::string bytes;
  EXPECT_TRUE(PAKU_3_1::encode(text, bytes));
  return bytes;
}

class TextSink final : public IFetchSink {
 public:
  bool write(const void* bytes, std::size_t count) override {
    m_text.append(static_cast<const char*>(bytes), count);
    return true;
  }
  bool clear() override {
    m_text.clear();
    return true;
  }

  std::string m_text;
};

}  // namespace

void ProgressRecorder::count(bool* cancel) {
  ++m_calls;
  if (m_throwAfter >= 0 && m_calls > m_throwAfter)
    throw std::runtime_error("enough");
  if (m_cancelAfter >= 0 && m_calls > m_cancelAfter)
    *cancel = true;
}

void ProgressRecorder::onStore(const StoreReport& report) {
  const auto bytesOf = [](const wchar_t* text) {
    std::string bytes;
    PAKU_3_1::encode(text, bytes);
    return bytes;
  };
  m_stores.push_back({bytesOf(report.store),
                      bytesOf(report.place),
                      bytesOf(report.identity),
                      report.outcome,
                      bytesOf(report.detail),
                      report.bytes});
}

void ProgressRecorder::onStart(int value, bool* cancel) {
  ++m_started;
  m_size = value;
  count(cancel);
}

void ProgressRecorder::onProgress(int value, bool* cancel) {
  m_last = value;
  count(cancel);
}

std::string realFile(const std::string& name) {
  return std::string(SYMSRV_REAL_FILES) + "/" + name;
}

std::string contentOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file) << path;
  return std::string(std::istreambuf_iterator<char>(file), {});
}

DownloadFixture::DownloadFixture()
    : m_root(utf8(m_tree.root())), m_word("~" + fs::path(m_root).filename().string()) {
  m_settings.defaultStore = at("default");
  // Far beyond what a loaded machine takes; a test that waits for a limit sets a short one.
  m_settings.limits.connect = milliseconds(10000);
  m_settings.limits.firstByte = milliseconds(10000);
  m_settings.limits.slowWindow = milliseconds(10000);
  m_settings.limits.slowBytes = 1000;
  m_settings.limits.bytes = 1024 * 1024;
  m_settings.limits.betweenTries = milliseconds(10);
}

DownloadFixture::~DownloadFixture() = default;

void DownloadFixture::serve(const std::string& certificate) {
  std::string port;
  const char* running = certificate.empty() ? std::getenv("SYMSRV_SERVER") : nullptr;
  if (running) {
    port = running;
  } else {
    m_server = startLoopbackServer(certificate);
    port = m_server ? m_server->port() : "";
  }
  m_origin = (certificate.empty() ? "http://" : "https://") + std::string("127.0.0.1:") + port;
  if (port.empty())
    throw std::runtime_error("the server does not start");
}

std::string DownloadFixture::address(const std::string& way, const std::string& userInfo) const {
  std::string text = m_origin + "/" + m_word + "/" + way;
  if (!userInfo.empty())
    text.insert(text.find("//") + 2, userInfo + "@");
  return text;
}

std::string DownloadFixture::at(const std::string& name) const {
  return fs::path(m_root + "/" + name).make_preferred().string();
}

std::string DownloadFixture::obtain(const std::vector<std::string>& elements,
                                    const std::string& binary) {
  if (!m_helper)
    m_helper = new SymSrvHelper(m_settings, makeTransport(), [this](const std::string& line) {
      m_reports.push_back(line);
    });
  m_helper->clearServers();
  for (const std::string& element : elements)
    m_helper->addServer(PAKU_3_1::decode(element).c_str());
  const auto file = m_helper->download(PAKU_3_1::decode(realFile(binary)).c_str(), &m_progress);
  return file ? utf8(file->getPath()) : std::string();
}

std::string DownloadFixture::obtainFrom(const std::string& way, const std::string& binary) {
  return obtain({"srv*" + at("cache") + "*" + address(way)}, binary);
}

std::string DownloadFixture::key(const std::string& name) {
  std::ifstream file(realFile("tiny64.guid"));
  std::string guid;
  std::getline(file, guid);
  guid.erase(std::remove(guid.begin(), guid.end(), '-'), guid.end());
  return "tiny64.pdb/" + guid + "1/" + name;
}

void DownloadFixture::file(const std::string& store,
                           const std::string& name,
                           const std::string& as) {
  m_tree.addFile(store + "/" + (as.empty() ? key() : as), contentOf(realFile(name)));
}

std::vector<std::string> DownloadFixture::filesIn(const std::string& folder) const {
  std::vector<std::string> names;
  const fs::path root = at(folder);
  if (!fs::exists(root))
    return names;
  for (const auto& entry : fs::recursive_directory_iterator(root)) {
    const std::string name = entry.path().lexically_relative(root).generic_string();
    if (name.compare(0, 7, ".misses") != 0)
      names.push_back(name + (entry.is_directory() ? "/" : ""));
  }
  std::erase_if(names, [&](const std::string& name) {
    return name.back() == '/' && std::any_of(names.begin(), names.end(), [&](const auto& other) {
             return other.size() > name.size() && other.compare(0, name.size(), name) == 0;
           });
  });
  std::sort(names.begin(), names.end());
  return names;
}

std::vector<std::string> DownloadFixture::requests() const {
  TextSink log;
  const std::unique_ptr<ITransport> transport = makeTransport();
  Progress silent(nullptr);
  const FetchResult result =
      symsrv_1_0::internal::fetch(*transport, m_origin + "/log/" + m_word, Settings(), silent, log);
  EXPECT_EQ(result.status, 200) << result.reason;
  std::vector<std::string> lines;
  std::istringstream text(log.m_text);
  for (std::string line; std::getline(text, line);) lines.push_back(line);
  return lines;
}

std::string DownloadFixture::reports() const {
  std::string text;
  for (const std::string& line : m_reports) text += line + "\n";
  return text;
}

}  // namespace symsrv_1_0::internal
