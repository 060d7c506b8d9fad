// Where symbol files are fetched from and to: directory stores among the search directories, a
// server in the symbol path, and caches.

#pragma once

#include <string>

#include "load/places.h"
#include "support/scoped_environment.h"

namespace quiver_load {

/// Sets the variables that lookups read, before threads run; puts them back.
class SymbolSources final {
 public:
  /// `port` is that of a server on this machine.
  SymbolSources(const Places& places, const std::string& port);

  /// The elements of the directory stores.
  std::wstring storeElement() const;
  std::wstring steadyElement() const;

 private:
  const Places& m_places;
  // Nothing of this machine answers, and nothing of this program's is left on it.
  quiver_test::ScopedVariable m_path{"PATH"};
  quiver_test::ScopedVariable m_noProxy{"no_proxy", "*"};
  quiver_test::ScopedVariable m_cache;
  quiver_test::ScopedVariable m_symbolPath;
};

}  // namespace quiver_load
