// What a run must not have done: grown, or kept descriptors.

#pragma once

#include <chrono>
#include <cstddef>

#include "load/findings.h"
#include "load/process_state.h"

namespace quiver_load {

/// Memory may have grown by this much since a third of the time was over.
std::size_t allowedGrowth(std::size_t before);

/// A run that is too short for a machine to have done everything many times proves nothing.
inline constexpr std::chrono::seconds kShortestForMemory{30};

void checkMemory(std::size_t before, std::size_t after, Findings& findings);

/// `before` is from when no thread ran yet.
void checkDescriptors(const Descriptors& before, const Descriptors& after, Findings& findings);

}  // namespace quiver_load
