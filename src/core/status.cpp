// The texts of the status codes.

#include "quiver/status.h"

#include <cstdint>
#include <iterator>

namespace QV_2_9 {

const char* statusToString(status_t status) {
  static constexpr const char* kTexts[] = {
      "Out of memory",
      "Not implemented",
      "Element already exists in the structure",
      "Element does not exist in the structure",
      "One or more arguments are invalid",
      "Unspecified error",
      "Operation succeeded and return logical FALSE",
      "Operation succeeded",
  };
  // Unsigned, so that no value overflows.
  const std::uint32_t index =
      static_cast<std::uint32_t>(status) - static_cast<std::uint32_t>(stOutOfMemory);
  return index < std::size(kTexts) ? kTexts[index] : "Incorrect status code";
}

}  // namespace QV_2_9
