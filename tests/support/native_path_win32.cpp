// Names are UTF-16, which is what paths hold; narrow texts are UTF-8.

#include <windows.h>
#include <system_error>

#include "support/native_path.h"

namespace quiver_test {
namespace {

std::wstring wideFromUtf8(const std::string& text) {
  if (text.empty())
    return {};
  const int size = static_cast<int>(text.size());
  const int length =
      MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text.data(), size, nullptr, 0);
  if (length == 0)
    throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), text);
  std::wstring wide(static_cast<std::size_t>(length), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, text.data(), size, wide.data(), length);
  return wide;
}

}  // namespace

NativePath::NativePath(const char* text) : NativePath(std::string(text)) {}
NativePath::NativePath(const std::string& text) : m_path(wideFromUtf8(text)) {}
NativePath::NativePath(const std::wstring& text) : m_path(text) {}

std::wstring toWide(const std::filesystem::path& path) {
  return path.native();
}

}  // namespace quiver_test
