// Step values as they travel with a candidate.

#pragma once

#include <cstdint>

#include "quiver/search_results.h"

namespace QV_2_9 {

/// Returns the enumerator's own name for 1 to 6, "Internal error: unknown search step" for every
/// other value. Never null; the text is static.
const wchar_t* searchStepToString(search_step_t step);

namespace internal {

/// A step value: the step number in the low 16 bits, 1 in the high 16 bits for a candidate from a
/// recursive scan.
constexpr std::uint32_t stepValue(search_step_t step, bool recursive) {
  return static_cast<std::uint32_t>(step) | (recursive ? 0x10000u : 0u);
}

constexpr std::int32_t stepNumber(std::uint32_t value) {
  return static_cast<std::int32_t>(value & 0xFFFFu);
}

}  // namespace internal
}  // namespace QV_2_9
