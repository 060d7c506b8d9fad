// The progress of one download.

#include "symsrv/progress.h"

#include <algorithm>
#include <limits>

namespace symsrv_1_0::internal {
namespace {

constexpr std::chrono::milliseconds kPatience{500};  // with a start that would have no size
constexpr std::chrono::milliseconds kBetweenCalls{100};

int kibibytes(std::uint64_t bytes) {
  const std::uint64_t value = bytes / 1024 + (bytes % 1024 != 0 ? 1 : 0);
  return static_cast<int>(
      std::min<std::uint64_t>(value, static_cast<std::uint64_t>(std::numeric_limits<int>::max())));
}

}  // namespace

Progress::~Progress() {
  try {
    finish();
  } catch (...) {  // NOLINT(bugprone-empty-catch): nobody is left to tell
  }
}

void Progress::begin(std::optional<std::uint64_t> size) {
  if (m_isPreliminary)
    return;
  m_hasTransfer = true;
  m_size = size.value_or(0);
  m_bytes = 0;
}

void Progress::start(int size) {
  m_isStarted = true;
  m_lastCall = Clock::now();
  m_callback->onStart(size, &m_isCanceled);
}

void Progress::report(int value) {
  m_lastValue = std::max(m_lastValue, value);
  m_lastCall = Clock::now();
  m_callback->onProgress(m_lastValue, &m_isCanceled);
}

bool Progress::tick() {
  if (!m_callback || m_isCanceled)
    return !m_isCanceled;
  const Clock::time_point now = Clock::now();
  if (!m_waitingSince)
    m_waitingSince = now;
  if (!m_isStarted && (m_hasTransfer || now - *m_waitingSince >= kPatience))
    start(kibibytes(m_size));
  else if (m_isStarted && now - m_lastCall >= kBetweenCalls)
    report(kibibytes(m_bytes));
  return !m_isCanceled;
}

bool Progress::complete() {
  if (!m_callback || m_isCanceled || m_isPreliminary)
    return !m_isCanceled;
  if (!m_isStarted)
    start(kibibytes(m_size));
  if (!m_isCanceled && m_lastValue < kibibytes(m_bytes))
    report(kibibytes(m_bytes));
  return !m_isCanceled;
}

void Progress::finish() {
  if (!m_isStarted || m_isFinished)
    return;
  m_isFinished = true;
  m_callback->onFinish();
}

}  // namespace symsrv_1_0::internal
