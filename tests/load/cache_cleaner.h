// Empties the caches of symbol files now and then, whatever is being fetched.

#pragma once

#include <chrono>
#include <filesystem>
#include <thread>

#include "load/looker.h"
#include "support/native_path.h"

namespace quiver_load {

class CacheCleaner final {
 public:
  explicit CacheCleaner(const Load& load) : m_load(load) {}

  /// Works until the load is over.
  void run() {
    const std::filesystem::path cache = quiver_test::NativePath(m_load.places.path("cache")).get();
    while (!m_load.isOver.load(std::memory_order_relaxed)) {
      std::this_thread::sleep_for(std::chrono::milliseconds(40));
      std::error_code error;
      if (std::filesystem::remove_all(cache, error) > 0)
        m_load.counts.add(Work::kCacheEmptied);
    }
  }

 private:
  const Load& m_load;
};

}  // namespace quiver_load
