// Names of copies in the making, such as ".paku-1234-0.tmp": the process and a count. They do not
// grow with the target's name, which may be as long as a name can be.

#pragma once

#include <string>
#include <string_view>

namespace PAKU_3_1::internal {

inline std::string temporaryName(unsigned long process, unsigned number) {
  return ".paku-" + std::to_string(process) + "-" + std::to_string(number) + ".tmp";
}

namespace temporary_name {

template <class Char>
bool takePrefix(std::basic_string_view<Char>& name, std::string_view prefix) {
  for (const char c : prefix) {
    if (name.empty() || name.front() != static_cast<Char>(c))
      return false;
    name.remove_prefix(1);
  }
  return true;
}

template <class Char>
bool takeNumber(std::basic_string_view<Char>& name) {
  const std::size_t before = name.size();
  while (!name.empty() && name.front() >= Char{'0'} && name.front() <= Char{'9'})
    name.remove_prefix(1);
  return name.size() < before;
}

}  // namespace temporary_name

/// Returns true for a name that `temporaryName` may have made, in the characters of a file system.
template <class Char>
bool isTemporaryName(std::basic_string_view<Char> name) {
  using temporary_name::takeNumber;
  using temporary_name::takePrefix;
  return takePrefix(name, ".paku-") && takeNumber(name) && takePrefix(name, "-") &&
         takeNumber(name) && takePrefix(name, ".tmp") && name.empty();
}

}  // namespace PAKU_3_1::internal
