// Prints what was wrong.

#include "load/findings.h"

#include <cstdio>

namespace quiver_load {

void Findings::add(const std::string& text) {
  constexpr std::size_t kMostPrinted = 20;
  const std::lock_guard guard(m_lock);
  if (++m_count <= kMostPrinted)
    std::printf("WRONG: %s\n", text.c_str());
}

std::size_t Findings::count() const {
  const std::lock_guard guard(m_lock);
  return m_count;
}

}  // namespace quiver_load
