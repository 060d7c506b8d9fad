// HTTP through libcurl. Connections are kept and used again, one set per request under way.

#include <cstdlib>
#include <curl/curl.h>
#include <mutex>
#include <vector>

#include "symsrv/text.h"
#include "symsrv/transport.h"

namespace symsrv_1_0::internal {
namespace {

constexpr int kTickMilliseconds = 50;
const char* const kUserAgent = "quiver-symsrv/2.9";

/// Connections with one request on them at a time.
struct Connections {
  Connections() : multi(curl_multi_init()), easy(curl_easy_init()) {}
  ~Connections() {
    curl_easy_cleanup(easy);
    curl_multi_cleanup(multi);
  }

  Connections(const Connections&) = delete;
  Connections& operator=(const Connections&) = delete;

  CURLM* multi;
  CURL* easy;
};

/// One request on its way.
class Hop final {
 public:
  Hop(Connections& connections, IHopSink& sink)
      : m_multi(connections.multi), m_easy(connections.easy), m_sink(sink) {}

  HopResult run(const HopRequest& request);

 private:
  static std::size_t onHeader(char* line, std::size_t, std::size_t count, void* self);
  static std::size_t onBody(char* bytes, std::size_t, std::size_t count, void* self);

  void setUp(const HopRequest& request);
  void setUserInfo(const std::string& userInfo);
  bool readHeaderLine(std::string_view line);
  bool passHeader();
  HopResult wait();
  HopResult resultOf(CURLcode code) const;
  std::string info(CURLINFO what) const;

  CURLM* m_multi;
  CURL* m_easy;
  IHopSink& m_sink;
  HopHeader m_header;
  bool m_isStopped = false;
  char m_error[CURL_ERROR_SIZE] = {};
};

std::string Hop::info(CURLINFO what) const {
  char* text = nullptr;
  curl_easy_getinfo(m_easy, what, &text);
  return text ? text : "";
}

bool Hop::passHeader() {
  long status = 0;
  curl_off_t length = -1;
  curl_easy_getinfo(m_easy, CURLINFO_RESPONSE_CODE, &status);
  if (status < 200)
    return true;  // an answer before the answer
  curl_easy_getinfo(m_easy, CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &length);
  m_header.status = static_cast<int>(status);
  if (length >= 0)
    m_header.contentLength = static_cast<std::uint64_t>(length);
  m_header.contentType = info(CURLINFO_CONTENT_TYPE);
  m_isStopped = !m_sink.header(m_header);
  return !m_isStopped;
}

bool Hop::readHeaderLine(std::string_view line) {
  if (startsWithIgnoreCase(line, "HTTP/"))
    m_header = {};
  else if (startsWithIgnoreCase(line, "Retry-After:"))
    m_header.retryAfter = trimmed(line.substr(12));
  else if (startsWithIgnoreCase(line, "Location:"))
    m_header.location = trimmed(line.substr(9));
  return !trimmed(line).empty() || passHeader();
}

std::size_t Hop::onHeader(char* line, std::size_t, std::size_t count, void* self) {
  return static_cast<Hop*>(self)->readHeaderLine({line, count}) ? count : 0;
}

std::size_t Hop::onBody(char* bytes, std::size_t, std::size_t count, void* self) {
  Hop& hop = *static_cast<Hop*>(self);
  hop.m_isStopped = hop.m_isStopped || !hop.m_sink.write(bytes, count);
  return hop.m_isStopped ? 0 : count;
}

void Hop::setUserInfo(const std::string& userInfo) {
  if (userInfo.empty())
    return;
  const std::size_t colon = userInfo.find(':');
  const auto set = [this](CURLoption option, const std::string& text) {
    int length = 0;
    char* plain = curl_easy_unescape(m_easy, text.c_str(), static_cast<int>(text.size()), &length);
    if (plain)
      curl_easy_setopt(m_easy, option, plain);
    curl_free(plain);
  };
  set(CURLOPT_USERNAME, userInfo.substr(0, colon));
  if (colon != std::string::npos)
    set(CURLOPT_PASSWORD, userInfo.substr(colon + 1));
}

void Hop::setUp(const HopRequest& request) {
  curl_easy_reset(m_easy);  // connections stay
  curl_easy_setopt(m_easy, CURLOPT_URL, request.url.c_str());
  curl_easy_setopt(m_easy, CURLOPT_PROTOCOLS_STR, "http,https");
  curl_easy_setopt(m_easy, CURLOPT_FOLLOWLOCATION, 0L);
  curl_easy_setopt(m_easy, CURLOPT_NOSIGNAL, 1L);
  curl_easy_setopt(m_easy, CURLOPT_QUICK_EXIT, 1L);  // no waiting for a name server at the end
  curl_easy_setopt(m_easy, CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
  curl_easy_setopt(m_easy, CURLOPT_USERAGENT, kUserAgent);
  curl_easy_setopt(
      m_easy, CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(request.connectLimit.count()));
  curl_easy_setopt(m_easy, CURLOPT_ERRORBUFFER, m_error);
  curl_easy_setopt(m_easy, CURLOPT_HEADERFUNCTION, &Hop::onHeader);
  curl_easy_setopt(m_easy, CURLOPT_HEADERDATA, this);
  curl_easy_setopt(m_easy, CURLOPT_WRITEFUNCTION, &Hop::onBody);
  curl_easy_setopt(m_easy, CURLOPT_WRITEDATA, this);
  if (!request.caFile.empty())
    curl_easy_setopt(m_easy, CURLOPT_CAINFO, request.caFile.c_str());
  setUserInfo(request.userInfo);
}

HopResult Hop::resultOf(CURLcode code) const {
  if (m_isStopped)
    return {HopOutcome::kStopped, {}};
  if (code == CURLE_OK)
    return {HopOutcome::kComplete, {}};
  const std::string reason = m_error[0] != '\0' ? m_error : curl_easy_strerror(code);
  const bool isCutOff = code == CURLE_PARTIAL_FILE || code == CURLE_RECV_ERROR ||
                        code == CURLE_HTTP2 || code == CURLE_HTTP2_STREAM;
  const bool hasBegun = m_header.status != 0;
  return {isCutOff && hasBegun ? HopOutcome::kCutOff : HopOutcome::kUnreachable, reason};
}

HopResult Hop::wait() {
  for (int running = 1;;) {
    if (curl_multi_perform(m_multi, &running) != CURLM_OK)
      return {HopOutcome::kUnreachable, "the transport failed"};
    int left = 0;
    while (const CURLMsg* message = curl_multi_info_read(m_multi, &left))
      if (message->msg == CURLMSG_DONE)
        return resultOf(message->data.result);
    if (!m_sink.tick())
      return {HopOutcome::kStopped, {}};
    curl_multi_poll(m_multi, nullptr, 0, kTickMilliseconds, nullptr);
  }
}

HopResult Hop::run(const HopRequest& request) {
  setUp(request);
  if (curl_multi_add_handle(m_multi, m_easy) != CURLM_OK)
    return {HopOutcome::kUnreachable, "the transport failed"};
  // Also when the sink throws.
  struct Removal {
    Hop& hop;
    ~Removal() { curl_multi_remove_handle(hop.m_multi, hop.m_easy); }
  } removal{*this};
  return wait();
}

class CurlTransport final : public ITransport {
 public:
  HopResult get(const HopRequest& request, IHopSink& sink) override {
    std::unique_ptr<Connections> connections = take();
    if (!connections->multi || !connections->easy)
      return {HopOutcome::kUnreachable, "not enough memory"};
    HopResult result = Hop(*connections, sink).run(request);
    const std::lock_guard guard(m_lock);
    m_idle.push_back(std::move(connections));
    return result;
  }

 private:
  std::unique_ptr<Connections> take() {
    const std::lock_guard guard(m_lock);
    if (m_idle.empty())
      return std::make_unique<Connections>();
    std::unique_ptr<Connections> connections = std::move(m_idle.back());
    m_idle.pop_back();
    return connections;
  }

  std::mutex m_lock;
  std::vector<std::unique_ptr<Connections>> m_idle;  // guarded by m_lock
};

}  // namespace

std::unique_ptr<ITransport> makeTransport() {
  static const bool isReady = curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
  return isReady ? std::make_unique<CurlTransport>() : nullptr;
}

}  // namespace symsrv_1_0::internal
