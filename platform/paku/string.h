// The text that the file library takes and gives: wide characters, never null.

#pragma once

#include <string>
#include <utility>

namespace PAKU_3_1 {

class String final {
 public:
  String() = default;
  String(const wchar_t* text) {  // NOLINT: plain text is what callers have; null counts as empty
    if (text)
      m_text = text;
  }
  String(std::wstring text) : m_text(std::move(text)) {}  // NOLINT: as above

  const wchar_t* wcharPtr() const { return m_text.c_str(); }
  const std::wstring& text() const { return m_text; }
  bool isEmpty() const { return m_text.empty(); }

  bool operator==(const String&) const = default;

 private:
  std::wstring m_text;
};

}  // namespace PAKU_3_1
