// GUIDs as text.

#include "symsrv/guid.h"

#include "symsrv/text.h"

namespace symsrv_1_0::internal {

std::string guidDigits(const Guid& guid) {
  static constexpr std::size_t kOrder[] = {3, 2, 1, 0, 5, 4, 7, 6, 8, 9, 10, 11, 12, 13, 14, 15};
  std::string digits;
  for (const std::size_t i : kOrder) digits += upperHex(guid[i], 2);
  return digits;
}

std::string guidText(const Guid& guid) {
  std::string text = guidDigits(guid);
  for (const std::size_t dash : {20u, 16u, 12u, 8u}) text.insert(dash, 1, '-');
  return text;
}

}  // namespace symsrv_1_0::internal
