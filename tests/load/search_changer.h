// Adds and clears directories of the shared search while it is used, and replaces it.

#pragma once

#include <random>
#include <string>

#include "load/looker.h"

namespace quiver_load {

class SearchChanger final {
 public:
  SearchChanger(const Load& load, unsigned seed) : m_load(load), m_random(seed) {}

  /// Changes until the load is over.
  void run();

 private:
  void changeDirs(SearchSetup& setup);
  std::wstring anyDirectory();

  const Load& m_load;
  std::minstd_rand m_random;
};

}  // namespace quiver_load
