// HTTP through libcurl. Connections are kept and used again, one set per request under way.

#include <cstdlib>
#include <cstring>
#include <curl/curl.h>
#include <exception>
#include <mutex>
#include <new>
#include <vector>

#include "symsrv/text.h"
#include "symsrv/transport.h"

namespace symsrv_1_0::internal {
namespace {

constexpr int kTickMilliseconds = 50;
const char* const kUserAgent = "quiver-symsrv/2.9";

// That there is no memory says nothing of the server. The library reports it as this error or that,
// so it gets its memory through functions that note it; when the process has set the library up
// before, what the library says must do.

thread_local bool t_hasNoMemory = false;

void* noted(void* memory, std::size_t size) {
  t_hasNoMemory = t_hasNoMemory || (!memory && size > 0);
  return memory;
}

void* allocate(std::size_t size) {
  return noted(std::malloc(size), size);
}

void* allocateCleared(std::size_t count, std::size_t size) {
  return noted(std::calloc(count, size), count * size);
}

void* reallocate(void* memory, std::size_t size) {
  return noted(std::realloc(memory, size), size);
}

char* duplicate(const char* text) {
  return static_cast<char*>(noted(strdup(text), 1));
}

bool setUpLibrary() {
  return curl_global_init_mem(
             CURL_GLOBAL_DEFAULT, allocate, std::free, reallocate, duplicate, allocateCleared) ==
         CURLE_OK;
}

template <class T>
T* notNull(T* made) {
  return made ? made : throw std::bad_alloc();
}

CURLcode checked(CURLcode code) {
  return code == CURLE_OUT_OF_MEMORY ? throw std::bad_alloc() : code;
}

CURLMcode checked(CURLMcode code) {
  return code == CURLM_OUT_OF_MEMORY ? throw std::bad_alloc() : code;
}

/// Connections with one request on them at a time.
using Connections = std::unique_ptr<CURLM, decltype(&curl_multi_cleanup)>;

/// One request on its way.
class Hop final {
 public:
  Hop(CURLM* multi, IHopSink& sink) : m_multi(multi), m_sink(sink) {}

  HopResult run(const HopRequest& request);

 private:
  static std::size_t onHeader(char* line, std::size_t, std::size_t count, void* self);
  static std::size_t onBody(char* bytes, std::size_t, std::size_t count, void* self);

  template <class Value>
  void set(CURLoption option, Value value) {
    static_cast<void>(checked(curl_easy_setopt(m_easy.get(), option, value)));
  }
  template <class Work>
  bool guarded(const Work& work);
  void setUp(const HopRequest& request);
  void setUserInfo(const std::string& userInfo);
  bool readHeaderLine(std::string_view line);
  bool passHeader();
  HopResult wait();
  HopResult resultOf(CURLcode code) const;
  std::string info(CURLINFO what) const;

  CURLM* m_multi;
  // A new one each time: to reset one may fail without a word. Connections are the other's.
  const std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> m_easy{notNull(curl_easy_init()),
                                                                   &curl_easy_cleanup};
  IHopSink& m_sink;
  HopHeader m_header;
  bool m_isStopped = false;
  std::exception_ptr m_thrown;  // must not pass through the library
  char m_error[CURL_ERROR_SIZE] = {};
};

std::string Hop::info(CURLINFO what) const {
  char* text = nullptr;
  curl_easy_getinfo(m_easy.get(), what, &text);
  return text ? text : "";
}

bool Hop::passHeader() {
  long status = 0;
  curl_off_t length = -1;
  curl_easy_getinfo(m_easy.get(), CURLINFO_RESPONSE_CODE, &status);
  if (status < 200)
    return true;  // an answer before the answer
  curl_easy_getinfo(m_easy.get(), CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &length);
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

/// Keeps what `work` throws until the library is left.
template <class Work>
bool Hop::guarded(const Work& work) {
  try {
    return !m_thrown && work();
  } catch (...) {
    m_thrown = std::current_exception();
    return false;
  }
}

std::size_t Hop::onHeader(char* line, std::size_t, std::size_t count, void* self) {
  Hop& hop = *static_cast<Hop*>(self);
  return hop.guarded([&] { return hop.readHeaderLine({line, count}); }) ? count : 0;
}

std::size_t Hop::onBody(char* bytes, std::size_t, std::size_t count, void* self) {
  Hop& hop = *static_cast<Hop*>(self);
  hop.m_isStopped = hop.m_isStopped || !hop.guarded([&] { return hop.m_sink.write(bytes, count); });
  return hop.m_isStopped ? 0 : count;
}

void Hop::setUserInfo(const std::string& userInfo) {
  if (userInfo.empty())
    return;
  const std::size_t colon = userInfo.find(':');
  const auto setPlain = [this](CURLoption option, const std::string& text) {
    int length = 0;
    const std::unique_ptr<char, decltype(&curl_free)> plain(
        notNull(
            curl_easy_unescape(m_easy.get(), text.c_str(), static_cast<int>(text.size()), &length)),
        &curl_free);
    set(option, plain.get());
  };
  setPlain(CURLOPT_USERNAME, userInfo.substr(0, colon));
  if (colon != std::string::npos)
    setPlain(CURLOPT_PASSWORD, userInfo.substr(colon + 1));
}

void Hop::setUp(const HopRequest& request) {
  set(CURLOPT_URL, request.url.c_str());
  set(CURLOPT_PROTOCOLS_STR, "http,https");
  set(CURLOPT_FOLLOWLOCATION, 0L);
  set(CURLOPT_NOSIGNAL, 1L);
  set(CURLOPT_QUICK_EXIT, 1L);  // no waiting for a name server at the end
  set(CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
  set(CURLOPT_USERAGENT, kUserAgent);
  set(CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(request.connectLimit.count()));
  set(CURLOPT_ERRORBUFFER, m_error);
  set(CURLOPT_HEADERFUNCTION, &Hop::onHeader);
  set(CURLOPT_HEADERDATA, this);
  set(CURLOPT_WRITEFUNCTION, &Hop::onBody);
  set(CURLOPT_WRITEDATA, this);
  if (!request.caFile.empty())
    set(CURLOPT_CAINFO, request.caFile.c_str());
  setUserInfo(request.userInfo);
}

/// Certificates do not change while a program runs, neither theirs nor ours.
bool isMistrust(CURLcode code) {
  return code == CURLE_PEER_FAILED_VERIFICATION || code == CURLE_SSL_CERTPROBLEM ||
         code == CURLE_SSL_CACERT_BADFILE || code == CURLE_SSL_ISSUER_ERROR ||
         code == CURLE_SSL_INVALIDCERTSTATUS;
}

HopResult Hop::resultOf(CURLcode code) const {
  if (m_isStopped)
    return {HopOutcome::kStopped, {}};
  if (code == CURLE_OK)
    return {HopOutcome::kComplete, {}};
  if (t_hasNoMemory)
    throw std::bad_alloc();
  const std::string reason = m_error[0] != '\0' ? m_error : curl_easy_strerror(code);
  const bool isCutOff = code == CURLE_PARTIAL_FILE || code == CURLE_RECV_ERROR ||
                        code == CURLE_HTTP2 || code == CURLE_HTTP2_STREAM;
  const bool hasBegun = m_header.status != 0;
  if (isCutOff && hasBegun)
    return {HopOutcome::kCutOff, reason};
  return {isMistrust(code) ? HopOutcome::kUntrusted : HopOutcome::kUnreachable, reason};
}

HopResult Hop::wait() {
  for (int running = 1;;) {
    if (checked(curl_multi_perform(m_multi, &running)) != CURLM_OK)
      return {HopOutcome::kUnreachable, "the transport failed"};
    if (m_thrown)
      std::rethrow_exception(m_thrown);
    int left = 0;
    while (const CURLMsg* message = curl_multi_info_read(m_multi, &left))
      if (message->msg == CURLMSG_DONE)
        return resultOf(checked(message->data.result));
    if (!m_sink.tick())
      return {HopOutcome::kStopped, {}};
    curl_multi_poll(m_multi, nullptr, 0, kTickMilliseconds, nullptr);
  }
}

HopResult Hop::run(const HopRequest& request) {
  t_hasNoMemory = false;
  setUp(request);
  if (checked(curl_multi_add_handle(m_multi, m_easy.get())) != CURLM_OK)
    return {HopOutcome::kUnreachable, "the transport failed"};
  // Also when the sink throws.
  struct Removal {
    Hop& hop;
    ~Removal() { curl_multi_remove_handle(hop.m_multi, hop.m_easy.get()); }
  } removal{*this};
  return wait();
}

class CurlTransport final : public ITransport {
 public:
  HopResult get(const HopRequest& request, IHopSink& sink) override {
    Connections connections = take();
    HopResult result = Hop(connections.get(), sink).run(request);
    const std::lock_guard guard(m_lock);
    m_idle.push_back(std::move(connections));
    return result;
  }

 private:
  Connections take() {
    const std::lock_guard guard(m_lock);
    if (m_idle.empty())
      return {notNull(curl_multi_init()), &curl_multi_cleanup};
    Connections connections = std::move(m_idle.back());
    m_idle.pop_back();
    return connections;
  }

  std::mutex m_lock;
  std::vector<Connections> m_idle;  // guarded by m_lock
};

}  // namespace

std::unique_ptr<ITransport> makeTransport() {
  static const bool isReady = setUpLibrary();
  return isReady ? std::make_unique<CurlTransport>() : nullptr;
}

}  // namespace symsrv_1_0::internal
