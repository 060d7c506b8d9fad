#include "resolve_progress.h"

#include <algorithm>
#include <utility>

#include "text_encoding.h"

namespace quiver_tool {
namespace {

constexpr std::size_t kColumns = 79;
constexpr std::size_t kBarColumns = 24;
constexpr std::chrono::milliseconds kPause(50);

bool beginsCharacter(char c) {
  return (static_cast<unsigned char>(c) & 0xC0u) != 0x80u;
}

std::size_t widthOf(const std::string& text) {
  return static_cast<std::size_t>(std::ranges::count_if(text, beginsCharacter));
}

// Keeps the end, where file names differ.
std::string shortened(const std::string& text, std::size_t columns) {
  std::size_t width = widthOf(text);
  if (width <= columns)
    return text;
  std::size_t at = 0;
  for (width += 3; at < text.size() && (width > columns || !beginsCharacter(text[at])); ++at) {
    if (beginsCharacter(text[at]))
      --width;
  }
  return "..." + text.substr(at);
}

std::string bar(const ResolveCounts& counts) {
  const std::size_t filled = counts.all == 0 ? 0 : kBarColumns * counts.done / counts.all;
  return "[" + std::string(filled, '#') + std::string(kBarColumns - filled, ' ') + "]";
}

}  // namespace

std::string resolveProgressLine(const ResolveCounts& counts, const std::string& name) {
  std::string text =
      bar(counts) + "  " + std::to_string(counts.done) + " of " + std::to_string(counts.all);
  if (counts.missed > 0)
    text += ", " + std::to_string(counts.missed) + " not found";
  text += "  ";
  return text + shortened(escapeControls(name), kColumns - std::min(text.size(), kColumns));
}

ResolveProgress::ResolveProgress(std::function<void(const std::string&)> write)
    : m_write(std::move(write)) {}

void ResolveProgress::show(const ResolveCounts& counts, const std::string& name) {
  const auto now = std::chrono::steady_clock::now();
  if (!m_write || now < m_next)
    return;
  m_next = now + kPause;
  const std::string line = resolveProgressLine(counts, name);
  const std::size_t width = widthOf(line);
  const std::size_t rest = m_width > width ? m_width - width : 0;
  m_write("\r" + line + std::string(rest, ' ') + std::string(rest, '\b'));
  m_width = width;
}

void ResolveProgress::hide() {
  if (m_width == 0)
    return;
  m_write("\r" + std::string(m_width, ' ') + "\r");
  m_width = 0;
  m_next = {};
}

}  // namespace quiver_tool
