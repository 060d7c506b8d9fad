// The environment as the C library has it.

#include <cstdlib>

#include "vesk/variable.h"

namespace vesk_1_8 {

std::optional<std::string> variableValue(const char* name) {
  const char* value = std::getenv(name);
  return value ? std::optional<std::string>(value) : std::nullopt;
}

}  // namespace vesk_1_8
