// One variable of the environment.

#pragma once

#include <optional>
#include <string>

namespace vesk_1_8 {

/// Returns the value as UTF-8, which may be empty; nothing when the variable is not set.
std::optional<std::string> variableValue(const char* name);

}  // namespace vesk_1_8
