// HTTP through WinHTTP, asynchronously: the system's threads note what happened, the caller's
// thread waits for it a while at a time, asks its sink whether to go on, and starts the next step.
//
// The system follows no redirect and offers nobody the user's credentials. It trusts the
// certificates that the system trusts, and takes the system's proxy.

#include <windows.h>
#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>
#include <winhttp.h>

#include "paku/text_encoding.h"
#include "symsrv/text.h"
#include "symsrv/transport.h"

namespace symsrv_1_0::internal {
namespace {

constexpr std::chrono::milliseconds kTick{50};
constexpr std::size_t kBuffer = 64 * 1024;
constexpr DWORD kAutomaticProxy = 4;  // WINHTTP_ACCESS_TYPE_AUTOMATIC_PROXY, since Windows 8.1
const wchar_t* const kUserAgent = L"quiver-symsrv/2.9";

/// What the system's threads write and the caller's thread reads. Lives until the system has said
/// that it is done with the request.
struct Events {
  std::mutex lock;
  std::condition_variable changed;
  std::optional<DWORD> status;  // guarded by lock, as the rest
  DWORD count = 0;
  DWORD error = 0;
  std::vector<char> buffer = std::vector<char>(kBuffer);
};

using SharedEvents = std::shared_ptr<Events>;

void CALLBACK onStatus(HINTERNET, DWORD_PTR context, DWORD status, void* info, DWORD length) {
  auto* holder = reinterpret_cast<SharedEvents*>(context);
  if (!holder)
    return;
  const SharedEvents events = *holder;
  const std::lock_guard guard(events->lock);
  switch (status) {
    case WINHTTP_CALLBACK_STATUS_SENDREQUEST_COMPLETE:
    case WINHTTP_CALLBACK_STATUS_HEADERS_AVAILABLE:
      break;
    case WINHTTP_CALLBACK_STATUS_DATA_AVAILABLE:
      events->count = *static_cast<const DWORD*>(info);
      break;
    case WINHTTP_CALLBACK_STATUS_READ_COMPLETE:
      events->count = length;
      break;
    case WINHTTP_CALLBACK_STATUS_REQUEST_ERROR:
      events->error = static_cast<const WINHTTP_ASYNC_RESULT*>(info)->dwError;
      break;
    case WINHTTP_CALLBACK_STATUS_HANDLE_CLOSING:
      delete holder;
      return;
    default:
      return;
  }
  events->status = status;
  events->changed.notify_all();
}

class Handle final {
 public:
  explicit Handle(HINTERNET handle) : m_handle(handle) {}
  ~Handle() {
    if (m_handle)
      WinHttpCloseHandle(m_handle);
  }

  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;

  HINTERNET get() const { return m_handle; }

 private:
  HINTERNET m_handle;
};

std::wstring headerText(HINTERNET request, DWORD which) {
  DWORD size = 0;
  WinHttpQueryHeaders(
      request, which, WINHTTP_HEADER_NAME_BY_INDEX, nullptr, &size, WINHTTP_NO_HEADER_INDEX);
  std::wstring text(size / sizeof(wchar_t) + 1, L'\0');
  size = static_cast<DWORD>(text.size() * sizeof(wchar_t));
  if (!WinHttpQueryHeaders(request,
                           which,
                           WINHTTP_HEADER_NAME_BY_INDEX,
                           text.data(),
                           &size,
                           WINHTTP_NO_HEADER_INDEX))
    return {};
  text.resize(size / sizeof(wchar_t));
  return text;
}

std::string headerUtf8(HINTERNET request, DWORD which) {
  std::string text;
  return PAKU_3_1::encode(headerText(request, which), text) ? text : std::string();
}

/// Returns a header as it came: the system has read its bytes in the code page of the machine.
std::string headerBytes(HINTERNET request, DWORD which) {
  const std::wstring text = headerText(request, which);
  const int count = static_cast<int>(text.size());
  std::string bytes(text.size() * 4, '\0');
  const int size = WideCharToMultiByte(CP_ACP,
                                       0,
                                       text.data(),
                                       count,
                                       bytes.data(),
                                       static_cast<int>(bytes.size()),
                                       nullptr,
                                       nullptr);
  bytes.resize(static_cast<std::size_t>(size));
  return bytes;
}

std::string unescaped(std::string_view text) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '%' && i + 2 < text.size()) {
      result +=
          static_cast<char>(std::strtol(std::string(text.substr(i + 1, 2)).c_str(), nullptr, 16));
      i += 2;
    } else {
      result += text[i];
    }
  }
  return result;
}

std::wstring base64(const std::string& bytes) {
  static const wchar_t kDigits[] =
      L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::wstring text;
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    unsigned value = 0;
    for (std::size_t n = 0; n < 3; ++n)
      value = value << 8 | (i + n < bytes.size() ? static_cast<unsigned char>(bytes[i + n]) : 0u);
    for (std::size_t n = 0; n < 4; ++n)
      text += i + n > bytes.size() ? L'=' : kDigits[value >> (18 - 6 * n) & 63];
  }
  return text;
}

std::wstring extraHeaders(const std::string& userInfo) {
  if (userInfo.empty())
    return {};
  const std::size_t colon = userInfo.find(':');
  const std::string password = colon == std::string::npos ? "" : userInfo.substr(colon + 1);
  return L"Authorization: Basic " +
         base64(unescaped(userInfo.substr(0, colon)) + ":" + unescaped(password)) + L"\r\n";
}

HopResult failed(DWORD error) {
  if (error == ERROR_WINHTTP_SECURE_FAILURE)
    return {HopOutcome::kUntrusted, "the certificate is not trusted"};
  return {HopOutcome::kUnreachable, "error " + std::to_string(error)};
}

/// One request on its way.
class Hop final {
 public:
  explicit Hop(IHopSink& sink) : m_sink(sink) {}

  HopResult run(HINTERNET session, const HopRequest& request);

 private:
  bool open(HINTERNET session, const HopRequest& request);
  /// Waits for the end of a step that was begun. Returns false when nothing more shall be done.
  bool await(bool isBegun);
  bool passHeader();
  HopResult transfer(const HopRequest& request);
  HopResult readBody();

  IHopSink& m_sink;
  SharedEvents m_events = std::make_shared<Events>();
  std::optional<Handle> m_connection;
  HINTERNET m_request = nullptr;
  HopResult m_result{HopOutcome::kStopped, {}};
  bool m_hasBegun = false;
};

bool Hop::open(HINTERNET session, const HopRequest& request) {
  const std::wstring url = PAKU_3_1::decode(request.url);
  URL_COMPONENTS parts{};
  parts.dwStructSize = sizeof parts;
  parts.dwHostNameLength = parts.dwUrlPathLength = parts.dwExtraInfoLength = static_cast<DWORD>(-1);
  if (!WinHttpCrackUrl(url.c_str(), 0, 0, &parts))
    return false;
  const std::wstring host(parts.lpszHostName, parts.dwHostNameLength);
  const std::wstring object = std::wstring(parts.lpszUrlPath, parts.dwUrlPathLength) +
                              std::wstring(parts.lpszExtraInfo, parts.dwExtraInfoLength);
  m_connection.emplace(WinHttpConnect(session, host.c_str(), parts.nPort, 0));
  m_request =
      WinHttpOpenRequest(m_connection->get(),
                         L"GET",
                         object.c_str(),
                         nullptr,
                         WINHTTP_NO_REFERER,
                         WINHTTP_DEFAULT_ACCEPT_TYPES,
                         WINHTTP_FLAG_ESCAPE_DISABLE |
                             (parts.nScheme == INTERNET_SCHEME_HTTPS ? WINHTTP_FLAG_SECURE : 0u));
  if (!m_request)
    return false;
  DWORD disabled =
      WINHTTP_DISABLE_REDIRECTS | WINHTTP_DISABLE_COOKIES | WINHTTP_DISABLE_AUTHENTICATION;
  WinHttpSetOption(m_request, WINHTTP_OPTION_DISABLE_FEATURE, &disabled, sizeof disabled);
  const int connectLimit = static_cast<int>(request.connectLimit.count());
  // Receiving has limits of the sink's own, which know the pace.
  WinHttpSetTimeouts(m_request, connectLimit, connectLimit, 0, 0);
  return true;
}

bool Hop::await(bool isBegun) {
  if (!isBegun) {
    m_result = failed(GetLastError());
    return false;
  }
  for (;;) {
    {
      std::unique_lock lock(m_events->lock);
      m_events->changed.wait_for(lock, kTick, [this] { return m_events->status.has_value(); });
      if (m_events->status) {
        const bool isError = *m_events->status == WINHTTP_CALLBACK_STATUS_REQUEST_ERROR;
        m_events->status.reset();
        if (isError) {
          m_result = failed(m_events->error);
          if (m_hasBegun)
            m_result.outcome = HopOutcome::kCutOff;
        }
        return !isError;
      }
    }
    if (!m_sink.tick())
      return false;
  }
}

bool Hop::passHeader() {
  HopHeader header;
  header.status = std::atoi(headerUtf8(m_request, WINHTTP_QUERY_STATUS_CODE).c_str());
  header.contentLength = decimal(headerUtf8(m_request, WINHTTP_QUERY_CONTENT_LENGTH));
  header.contentType = headerUtf8(m_request, WINHTTP_QUERY_CONTENT_TYPE);
  header.location = headerBytes(m_request, WINHTTP_QUERY_LOCATION);
  header.retryAfter = headerUtf8(m_request, WINHTTP_QUERY_RETRY_AFTER);
  m_hasBegun = true;
  return m_sink.header(header);
}

HopResult Hop::transfer(const HopRequest& request) {
  const std::wstring headers = extraHeaders(request.userInfo);
  auto* holder = new SharedEvents(m_events);  // deleted when the system has closed the request
  auto context = reinterpret_cast<DWORD_PTR>(holder);
  WinHttpSetOption(m_request, WINHTTP_OPTION_CONTEXT_VALUE, &context, sizeof context);
  WinHttpSetStatusCallback(m_request, onStatus, WINHTTP_CALLBACK_FLAG_ALL_NOTIFICATIONS, 0);
  if (!await(WinHttpSendRequest(m_request,
                                headers.empty() ? WINHTTP_NO_ADDITIONAL_HEADERS : headers.c_str(),
                                static_cast<DWORD>(headers.size()),
                                WINHTTP_NO_REQUEST_DATA,
                                0,
                                0,
                                context)) ||
      !await(WinHttpReceiveResponse(m_request, nullptr)) || !passHeader())
    return m_result;
  return readBody();
}

/// Reads what is there and no more: waiting for a full buffer would hide the pace.
HopResult Hop::readBody() {
  std::vector<char>& buffer = m_events->buffer;
  for (;;) {
    if (!await(WinHttpQueryDataAvailable(m_request, nullptr)))
      return m_result;
    const DWORD wanted = std::min(m_events->count, static_cast<DWORD>(buffer.size()));
    if (wanted == 0)
      return {HopOutcome::kComplete, {}};
    if (!await(WinHttpReadData(m_request, buffer.data(), wanted, nullptr)))
      return m_result;
    if (m_events->count == 0)
      return {HopOutcome::kComplete, {}};
    if (!m_sink.write(buffer.data(), m_events->count) || !m_sink.tick())
      return m_result;
  }
}

/// The request may go on for a while after it was closed: what it writes to waits for it, the
/// caller does not.
HopResult Hop::run(HINTERNET session, const HopRequest& request) {
  struct Closing {
    Hop& hop;
    ~Closing() {
      if (hop.m_request)
        WinHttpCloseHandle(hop.m_request);
    }
  } closing{*this};
  return open(session, request) ? transfer(request) : failed(GetLastError());
}

HINTERNET openSession(DWORD access) {
  return WinHttpOpen(
      kUserAgent, access, WINHTTP_NO_PROXY_NAME, WINHTTP_NO_PROXY_BYPASS, WINHTTP_FLAG_ASYNC);
}

HINTERNET openSession() {
  const HINTERNET session = openSession(kAutomaticProxy);
  return session ? session : openSession(WINHTTP_ACCESS_TYPE_DEFAULT_PROXY);
}

class WinHttpTransport final : public ITransport {
 public:
  WinHttpTransport() : m_session(openSession()) {}

  bool isOpen() const { return m_session.get() != nullptr; }

  HopResult get(const HopRequest& request, IHopSink& sink) override {
    return Hop(sink).run(m_session.get(), request);
  }

 private:
  Handle m_session;
};

}  // namespace

std::unique_ptr<ITransport> makeTransport() {
  auto transport = std::make_unique<WinHttpTransport>();
  return transport->isOpen() ? std::move(transport) : nullptr;
}

}  // namespace symsrv_1_0::internal
