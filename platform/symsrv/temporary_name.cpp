// Names of files in the making: "a.pdb.1234.0123456789abcdef.tmp".

#include <random>

#include "symsrv/files.h"
#include "symsrv/process_id.h"
#include "symsrv/text.h"

namespace symsrv_1_0::internal {
namespace {

constexpr std::string_view kSuffix = ".tmp";
constexpr std::size_t kRandomDigits = 16;

bool isAllOf(std::string_view text, std::string_view digits) {
  return !text.empty() && text.find_first_not_of(digits) == std::string_view::npos;
}

/// Cuts off and returns what follows the last dot.
std::string_view cutLast(std::string_view& name) {
  const std::size_t dot = name.rfind('.');
  if (dot == std::string_view::npos)
    return {};
  const std::string_view last = name.substr(dot + 1);
  name = name.substr(0, dot);
  return last;
}

}  // namespace

std::string temporaryName(const std::string& name) {
  std::random_device random;
  const std::uint64_t number = std::uint64_t{random()} << 32 | random();
  return name + "." + std::to_string(processId()) + "." + lowerHex(number, kRandomDigits) +
         std::string(kSuffix);
}

bool isTemporaryName(std::string_view name) {
  if (cutLast(name) != kSuffix.substr(1))
    return false;
  const std::string_view random = cutLast(name);
  return random.size() == kRandomDigits && isAllOf(random, "0123456789abcdef") &&
         isAllOf(cutLast(name), "0123456789") && !name.empty();
}

}  // namespace symsrv_1_0::internal
