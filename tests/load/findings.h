// What was wrong.

#pragma once

#include <cstddef>
#include <mutex>
#include <string>

namespace quiver_load {

/// Any thread may report; the first few are printed at once.
class Findings final {
 public:
  void add(const std::string& text);
  std::size_t count() const;

 private:
  mutable std::mutex m_lock;
  std::size_t m_count = 0;  // guarded by m_lock
};

}  // namespace quiver_load
