// Elements of the symbol path.

#include "load/symbol_sources.h"

namespace quiver_load {

SymbolSources::SymbolSources(const Places& places, const std::string& port)
    : m_places(places),
      m_cache("QUIVER_SYMBOL_CACHE", places.path("default")),
      m_symbolPath("_NT_SYMBOL_PATH",
                   L"srv*" + places.path("cache/server") + L"*http://127.0.0.1:" +
                       std::wstring(port.begin(), port.end()) + L"/~load/good") {}

std::wstring SymbolSources::storeElement() const {
  return L"srv*" + m_places.path("cache/store") + L"*" + m_places.path("store");
}

std::wstring SymbolSources::steadyElement() const {
  return L"srv*" + m_places.path("steady");
}

}  // namespace quiver_load
