// A sought name with its hash.

#include "paku/index_names.h"

#include <utility>

namespace PAKU_3_1::internal {

SoughtName soughtName(const std::wstring& component) {
  NameString text = encodedName(component);
  const std::uint32_t hash = nameHash(text);
  return {std::move(text), hash};
}

}  // namespace PAKU_3_1::internal
