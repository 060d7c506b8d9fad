#include "json_locator.h"

#include <algorithm>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <set>
#include <vector>

namespace quiver_tool {
namespace {

using Json = nlohmann::json;

// Each takes memory, many times that of its text; a document that means something has fewer.
constexpr std::size_t kMostLevels = 100;
constexpr std::size_t kMostValues = 4'000'000;

/// Walks a text and tells how many bytes the parser has taken of it.
class CountingIterator {
 public:
  using iterator_category = std::input_iterator_tag;
  using value_type = char;
  using difference_type = std::ptrdiff_t;
  using pointer = const char*;
  using reference = const char&;

  CountingIterator(const char* at, const char** taken) : m_at(at), m_taken(taken) {}

  reference operator*() const { return *m_at; }
  CountingIterator& operator++() {
    ++m_at;
    if (m_taken)
      *m_taken = m_at;
    return *this;
  }
  bool operator==(const CountingIterator& other) const { return m_at == other.m_at; }
  bool operator!=(const CountingIterator& other) const { return m_at != other.m_at; }

 private:
  const char* m_at;
  const char** m_taken;
};

// "[...] parse error at line 1, column 5: REASON; last read: ..." -> REASON
std::string reasonOf(const std::string& text) {
  const std::size_t column = text.find("column ");
  const std::size_t begin = column == std::string::npos ? column : text.find(": ", column);
  if (begin == std::string::npos)
    return "this is no JSON";
  const std::string reason = text.substr(begin + 2, text.find("; last read", begin) - begin - 2);
  return reason.substr(0, reason.find("\n"));
}

/// Follows the parser through the text: which value it is at, and where the one before ended.
class Walk final : public nlohmann::json_sax<Json> {
 public:
  Walk(std::string_view text, const std::string* sought) : m_text(text), m_sought(sought) {
    if (sought)
      m_soughtDepth = static_cast<std::size_t>(std::ranges::count(*sought, '/'));
  }

  bool run() {
    m_taken = m_text.data();
    const CountingIterator begin(m_text.data(), &m_taken);
    const CountingIterator end(m_text.data() + m_text.size(), nullptr);
    return Json::sax_parse(begin, end, this);
  }

  const std::optional<JsonFault>& fault() const { return m_fault; }
  std::size_t found() const { return m_found; }

  bool null() override { return value(); }
  bool boolean(bool) override { return value(); }
  bool number_integer(number_integer_t) override { return value(); }
  bool number_unsigned(number_unsigned_t) override { return value(); }
  bool number_float(number_float_t, const string_t&) override { return value(); }
  bool string(string_t&) override { return value(); }
  bool binary(binary_t&) override { return value(); }
  bool start_object(std::size_t) override { return open(false); }
  bool start_array(std::size_t) override { return open(true); }
  bool end_object() override { return close(); }
  bool end_array() override { return close(); }
  bool key(string_t& text) override {
    Level& level = m_levels.back();
    const std::size_t at = begin();
    level.key = text;
    m_end = m_taken;
    // Keys are looked at on the first walk only, which no text passes that has one twice.
    if (m_sought || level.keys.insert(text).second)
      return true;
    return refuse(at, "this key is there already");
  }
  bool parse_error(std::size_t position,
                   const std::string&,
                   const nlohmann::detail::exception& error) override {
    constexpr int kNumberOverflow = 406;
    if (error.id == kNumberOverflow)
      return refuse(begin(), "this number is beyond everything");
    const std::size_t offset = std::min(position == 0 ? 0 : position - 1, m_text.size());
    return refuse(offset, reasonOf(error.what()));
  }

 private:
  struct Level {
    bool isArray = false;
    std::size_t index = 0;
    std::string key;
    std::set<std::string> keys;  // of an object
  };

  bool refuse(std::size_t offset, const std::string& reason) {
    m_fault = JsonFault{offset, pointer(), reason};
    return false;
  }

  std::string pointer() const {
    std::string text;
    for (const Level& level : m_levels)
      text += pointerTo("", level.isArray ? std::to_string(level.index) : level.key);
    return text;
  }

  // A number is known to end by what follows it, so the value before may have taken that too.
  std::size_t begin() const {
    const char* at = m_end ? m_end : m_text.data();
    const char* end = m_text.data() + m_text.size();
    constexpr std::string_view kBetween = " \t\r\n,:";
    while (at != end && kBetween.find(*at) != std::string_view::npos) ++at;
    return static_cast<std::size_t>(at - m_text.data());
  }

  // Pointers are made only at the right depth: there may be a million values.
  bool isSought() const {
    return m_sought && m_levels.size() == m_soughtDepth && *m_sought == pointer();
  }

  /// Returns false when the walk ends here.
  bool takeValue() {
    if (isSought()) {
      m_found = begin();
      return false;
    }
    return ++m_values <= kMostValues ||
           refuse(begin(), "there are more than " + std::to_string(kMostValues) + " values");
  }
  bool value() {
    if (!takeValue())
      return false;
    next();
    return true;
  }
  bool open(bool isArray) {
    if (!takeValue())
      return false;
    if (m_levels.size() == kMostLevels)
      return refuse(begin(), "there are more than " + std::to_string(kMostLevels) + " levels");
    m_levels.push_back({isArray, 0, {}, {}});
    m_end = m_taken;
    return true;
  }
  bool close() {
    m_levels.pop_back();
    next();
    return true;
  }
  void next() {
    if (!m_levels.empty() && m_levels.back().isArray)
      ++m_levels.back().index;
    m_end = m_taken;
  }

  std::string_view m_text;
  const std::string* m_sought;
  std::size_t m_soughtDepth = 0;
  std::size_t m_values = 0;
  const char* m_taken = nullptr;
  const char* m_end = nullptr;
  std::vector<Level> m_levels;
  std::optional<JsonFault> m_fault;
  std::size_t m_found = m_text.size();
};

}  // namespace

std::optional<JsonFault> findSyntaxFault(std::string_view text) {
  Walk walk(text, nullptr);
  if (!walk.run())
    return walk.fault();
  // The parser takes a NUL for the end.
  if (const std::size_t end = text.find('\0'); end != std::string_view::npos)
    return JsonFault{end, "", "a NUL stands behind the document"};
  return std::nullopt;
}

std::size_t offsetOfValue(std::string_view text, const std::string& pointer) {
  Walk walk(text, &pointer);
  walk.run();
  return walk.found();
}

std::string lineAndColumn(std::string_view text, std::size_t offset) {
  const std::string_view before = text.substr(0, offset);
  const std::size_t lines = static_cast<std::size_t>(std::ranges::count(before, '\n'));
  const std::size_t lineBegin = before.rfind('\n') + 1;  // 0 when there is none.
  const auto isFirstByte = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; };
  const auto column = std::ranges::count_if(before.substr(lineBegin), isFirstByte);
  return "line " + std::to_string(lines + 1) + ", column " + std::to_string(column + 1);
}

std::string pointerTo(const std::string& pointer, const std::string& key) {
  std::string text = pointer + "/";
  for (const char c : key) text += c == '~' ? "~0" : c == '/' ? "~1" : std::string(1, c);
  return text;
}

}  // namespace quiver_tool
