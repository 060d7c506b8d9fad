// The environment of this process, as the library reads it.

#pragma once

#include <optional>
#include <string>

namespace quiver_tool {

/// Returns nothing for a variable that is not set.
std::optional<std::wstring> environmentVariable(const std::string& name);

/// Call it while the process has one thread.
void setEnvironmentVariable(const std::string& name, const std::wstring& value);

}  // namespace quiver_tool
