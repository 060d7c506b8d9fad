// Names as tests write them, narrow or wide, and as the system takes them.
//
// The standard library converts wide names by the process's locale; here they are UTF-8 always. A
// byte that is no UTF-8 stands in wide texts as U+DC80 to U+DCFF.

#pragma once

#include <filesystem>
#include <string>

namespace quiver_test {

/// What a kit function takes where a test may write "a", L"a" or a path. Narrow texts are UTF-8, or
/// any bytes where the system's names are bytes.
class NativePath final {
 public:
  NativePath(const char* text);
  NativePath(const std::string& text);
  NativePath(const std::filesystem::path& path) : m_path(path) {}
  NativePath(const wchar_t* text) : NativePath(std::wstring(text)) {}
  NativePath(const std::wstring& text);

  const std::filesystem::path& get() const { return m_path; }

 private:
  std::filesystem::path m_path;
};

std::wstring toWide(const std::filesystem::path& path);

}  // namespace quiver_test
