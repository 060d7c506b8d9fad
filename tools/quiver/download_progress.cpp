#include "download_progress.h"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace quiver_tool {
namespace {

std::string mebibytes(std::int32_t kibibytes) {
  char text[32];
  std::snprintf(text, sizeof text, "%.1f", kibibytes / 1024.0);
  return text;
}

}  // namespace

std::string progressLine(std::int32_t done, std::int32_t total) {
  const std::int32_t arrived = std::max(done, 0);
  if (total <= 0)
    return "downloading  " + mebibytes(arrived) + " MiB";
  const std::int64_t percent = std::min<std::int64_t>(std::int64_t{100} * arrived / total, 100);
  return "downloading  " + mebibytes(arrived) + " of " + mebibytes(total) + " MiB  " +
         std::to_string(percent) + " %";
}

DownloadProgress::DownloadProgress(std::function<void(const std::string&)> write)
    : m_write(std::move(write)) {}

void DownloadProgress::start(std::int32_t value) {
  m_watch.emplace();
  m_total = value;
  show(progressLine(0, value));
}

void DownloadProgress::progress(std::int32_t value) {
  show(progressLine(value, m_total));
}

void DownloadProgress::finish() {
  show("");
  m_watch.reset();
}

bool DownloadProgress::isCanceled() {
  m_wasInterrupted = m_wasInterrupted || (m_watch && InterruptWatch::isInterrupted());
  return m_wasInterrupted;
}

// Blanks wipe out what a longer line left behind, on terminals of every kind.
void DownloadProgress::show(const std::string& line) {
  if (!m_write || line == m_shown)
    return;
  const std::size_t rest = m_shown.size() > line.size() ? m_shown.size() - line.size() : 0;
  const std::string back = line.empty() ? "\r" : std::string(rest, '\b');
  m_write("\r" + line + std::string(rest, ' ') + back);
  m_shown = line;
}

}  // namespace quiver_tool
