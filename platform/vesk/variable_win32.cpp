// The environment of the process itself: the run-time library's copy misses later changes.

#include <windows.h>
#include <string_view>

#include "vesk/utf8.h"
#include "vesk/variable.h"

namespace vesk_1_8 {

std::optional<std::string> variableValue(const char* name) {
  const std::wstring wideName(name, name + std::string_view(name).size());
  std::wstring value(256, L'\0');
  for (;;) {
    SetLastError(ERROR_SUCCESS);
    const DWORD size = static_cast<DWORD>(value.size());
    const DWORD length = GetEnvironmentVariableW(wideName.c_str(), value.data(), size);
    if (length == 0 && GetLastError() != ERROR_SUCCESS)
      return std::nullopt;
    value.resize(length);
    if (length < size)
      break;
  }
  std::string text;
  appendUtf8(text, value);
  return text;
}

}  // namespace vesk_1_8
