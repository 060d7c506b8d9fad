// Names as tests write them, narrow or wide, and as the system takes them.
//
// Both without a look at the process's locale, as quiver/file_system_path.h has it.

#pragma once

#include <filesystem>
#include <string>

#include "quiver/file_system_path.h"

namespace quiver_test {

/// What a kit function takes where a test may write "a", L"a" or a path. Narrow texts are UTF-8, or
/// any bytes where the system's names are bytes.
class NativePath final {
 public:
  NativePath(const char* text) : NativePath(std::string(text)) {}
  NativePath(const std::string& text) : NativePath(QV_2_9::fromNameBytes(text)) {}
  NativePath(const std::filesystem::path& path) : m_path(path) {}
  NativePath(const wchar_t* text) : NativePath(std::wstring(text)) {}
  NativePath(const std::wstring& text) : m_path(QV_2_9::toNativePath(text)) {}

  const std::filesystem::path& get() const { return m_path; }

 private:
  std::filesystem::path m_path;
};

inline std::wstring toWide(const std::filesystem::path& path) {
  return QV_2_9::fromNativePath(path);
}

}  // namespace quiver_test
