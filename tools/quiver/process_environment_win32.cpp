#include <windows.h>

#include "process_environment.h"
#include "text_encoding.h"

namespace quiver_tool {

std::optional<std::wstring> environmentVariable(const std::string& name) {
  std::wstring value(32767, L'\0');  // no variable is longer
  SetLastError(ERROR_SUCCESS);
  const DWORD length =
      GetEnvironmentVariableW(toWide(name).c_str(), value.data(), static_cast<DWORD>(value.size()));
  if (length == 0 && GetLastError() != ERROR_SUCCESS)
    return std::nullopt;
  value.resize(length);
  return value;
}

void setEnvironmentVariable(const std::string& name, const std::wstring& value) {
  SetEnvironmentVariableW(toWide(name).c_str(), value.c_str());
}

}  // namespace quiver_tool
