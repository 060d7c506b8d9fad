// Judges answers.

#include "symsrv/hop_watcher.h"

#include <algorithm>
#include <array>
#include <utility>

#include "symsrv/text.h"

namespace symsrv_1_0::internal {
namespace {

// Bytes of an error page, to keep the connection.
constexpr std::uint64_t kPassedOver = std::uint64_t{64} << 10;

template <std::size_t N>
bool isOneOf(int status, const std::array<int, N>& list) {
  return std::find(list.begin(), list.end(), status) != list.end();
}

bool isRedirect(int status) {
  return isOneOf(status, std::array{301, 302, 303, 307, 308});
}

std::string shownSeconds(std::chrono::milliseconds time) {
  const auto tenths = (time.count() + 99) / 100;
  return std::to_string(tenths / 10) + (tenths % 10 ? "." + std::to_string(tenths % 10) : "") +
         " s";
}

}  // namespace

HopWatcher::HopWatcher(const Limits& limits, Progress& progress, IFetchSink& sink)
    : m_limits(limits),
      m_progress(progress),
      m_sink(sink),
      m_begin(Clock::now()),
      m_windowBegin(m_begin) {}

bool HopWatcher::stop(Kind kind, std::string reason) {
  m_verdict = FetchResult{kind, m_header.status, std::move(reason)};
  return false;
}

bool HopWatcher::header(const HopHeader& header) {
  m_header = header;
  m_received = 0;
  m_isBusy = isOneOf(header.status, std::array{408, 429, 500, 502, 503, 504});
  if (header.status == 200)
    return beginBody();
  // Of redirects and errors nothing is needed but the header.
  return header.contentLength.value_or(kPassedOver + 1) <= kPassedOver;
}

bool HopWatcher::beginBody() {
  if (startsWithIgnoreCase(m_header.contentType, "text/html"))
    return stop(Kind::kPage, "a page of text in the place of a file");
  if (m_header.contentLength.value_or(0) > m_limits.bytes)
    return stop(Kind::kRefused, "larger than the limit");
  m_hasBody = true;
  m_windowBegin = Clock::now();
  m_windowBytes = 0;
  m_progress.begin(m_header.contentLength);
  return true;
}

bool HopWatcher::write(const void* bytes, std::size_t count) {
  m_received += count;
  if (!m_hasBody)
    return m_received <= kPassedOver;
  m_windowBytes += count;
  if (m_received > m_limits.bytes)
    return stop(Kind::kRefused, "larger than the limit");
  if (!m_sink.write(bytes, count))
    return stop(Kind::kSinkFull, "cannot be written");
  m_progress.add(count);
  return true;
}

bool HopWatcher::isInTime(Clock::time_point now) {
  const auto passed = std::chrono::duration_cast<std::chrono::milliseconds>(now - m_begin);
  const std::chrono::milliseconds toAnswer = m_limits.connect + m_limits.firstByte;
  if (!m_hasBody && passed > toAnswer)
    return stop(Kind::kTrouble, "no answer within " + shownSeconds(toAnswer));
  if (m_limits.total.count() > 0 && passed > m_limits.total)
    return stop(Kind::kTrouble, "not done within " + shownSeconds(m_limits.total));
  return true;
}

bool HopWatcher::keepsPace(Clock::time_point now) {
  if (!m_hasBody || now - m_windowBegin < m_limits.slowWindow)
    return true;
  if (m_windowBytes < m_limits.slowBytes)
    return stop(Kind::kTrouble, "too slow");
  m_windowBegin = now;
  m_windowBytes = 0;
  return true;
}

bool HopWatcher::tick() {
  const Clock::time_point before = Clock::now();
  if (!m_progress.tick())
    return stop(Kind::kCanceled, "canceled");
  const Clock::time_point now = Clock::now();
  m_begin += now - before;
  m_windowBegin += now - before;
  return isInTime(now) && keepsPace(now);
}

std::string HopWatcher::takeRedirect() {
  if (m_verdict || !isRedirect(m_header.status))
    return {};
  return std::exchange(m_header.location, {});
}

FetchResult HopWatcher::judgeStatus() const {
  const int status = m_header.status;
  const std::string text = "status " + std::to_string(status);
  // Stores of objects say "forbidden" for what is not there.
  if (isOneOf(status, std::array{403, 404, 410}))
    return {Kind::kMissing, status, text};
  return {Kind::kTrouble, status, text, isOneOf(status, std::array{401, 407})};
}

FetchResult HopWatcher::judge(const HopResult& hop) {
  if (m_verdict)
    return *m_verdict;
  const bool isUntrusted = hop.outcome == HopOutcome::kUntrusted;
  if (isUntrusted || hop.outcome == HopOutcome::kUnreachable)
    return {Kind::kTrouble, m_header.status, printable(hop.reason), isUntrusted};
  if (m_header.status != 200)
    return judgeStatus();
  const bool isShort = m_header.contentLength && *m_header.contentLength != m_received;
  if (hop.outcome == HopOutcome::kCutOff || isShort)
    return {Kind::kCutOff, 200, "cut off"};
  if (!m_progress.complete())
    return {Kind::kCanceled, 200, "canceled"};
  return {Kind::kDone, 200, "status 200"};
}

}  // namespace symsrv_1_0::internal
