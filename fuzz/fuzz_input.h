// The bytes of a fuzzer, taken piece by piece. When they are used up everything is zero or empty.

#pragma once

#include <cstddef>
#include <cstdlib>
#include <string>
#include <string_view>

#include "paku/text_encoding.h"

namespace quiver_fuzz {

/// Ends the process for a broken promise.
inline void require(bool isTrue) {
  if (!isTrue)
    std::abort();
}

class FuzzInput final {
 public:
  explicit FuzzInput(std::string_view bytes) : m_rest(bytes) {}

  bool isEmpty() const { return m_rest.empty(); }

  unsigned number() {
    if (m_rest.empty())
      return 0;
    const auto number = static_cast<unsigned char>(m_rest.front());
    m_rest.remove_prefix(1);
    return number;
  }

  unsigned below(unsigned limit) { return number() % limit; }
  bool flag() { return below(2) == 1; }

  /// Returns the text up to the next end of a line, which is taken too; NULs end it as well.
  std::wstring line() {
    const std::size_t end = m_rest.find('\n');
    const std::string_view taken = m_rest.substr(0, end);
    m_rest.remove_prefix(end == std::string_view::npos ? m_rest.size() : end + 1);
    return PAKU_3_1::decode(taken.substr(0, taken.find('\0')));
  }

 private:
  std::string_view m_rest;
};

}  // namespace quiver_fuzz
