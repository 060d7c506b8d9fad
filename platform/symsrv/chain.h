// The grammar of symbol-server elements.
//
//   srv*A*B*C              a chain of stores, the nearest first
//   symsrv*symsrv.dll*A*B  the same, with the name of the one library that is built in
//   cache*D                D takes a copy of what any later element yields
//
// Blanks and semicolons at the end are no part of it. Up to 10 stores. An empty store stands for
// the default one, so "srv*" is that alone. A store is a directory or the address of an HTTP
// server. Another library is never loaded: its name makes the element unsupported.

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "symsrv/url.h"

namespace symsrv_1_0::internal {

struct StoreName {
  std::string directory;   ///< Empty for a server.
  std::optional<Url> url;  ///< Set for a server.
};

struct Chain {
  bool isCache = false;
  std::vector<StoreName> stores;
};

struct ParsedElement {
  std::optional<Chain> chain;
  std::string refusal;  ///< Why there is no chain, for people.
};

/// `defaultStore` stands for empty stores.
ParsedElement parseElement(std::string_view element, const std::string& defaultStore);

/// The elements given so far, each with the cache that was in force when it came. A new cache takes
/// the place of the one before. What begins with a server has the default store before it, where
/// its files go.
class ChainList final {
 public:
  /// Returns the reason when the element is refused, an empty text otherwise.
  std::string add(std::string_view element, const std::string& defaultStore);
  void clear();

  const std::vector<Chain>& chains() const { return m_chains; }

 private:
  std::vector<Chain> m_chains;
  std::optional<StoreName> m_cache;
};

}  // namespace symsrv_1_0::internal
