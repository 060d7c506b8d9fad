#include <cstdlib>

#include "process_environment.h"
#include "text_encoding.h"

namespace quiver_tool {

std::optional<std::wstring> environmentVariable(const std::string& name) {
  const char* value = std::getenv(name.c_str());
  return value ? std::optional<std::wstring>(toWide(value)) : std::nullopt;
}

void setEnvironmentVariable(const std::string& name, const std::wstring& value) {
  ::setenv(name.c_str(), toBytes(value).c_str(), 1);
}

}  // namespace quiver_tool
