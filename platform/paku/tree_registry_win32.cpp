// One registry for the process.

#include <windows.h>

#include "paku/tree_registry.h"

namespace PAKU_3_1::internal {

TreeRegistry& TreeRegistry::instance() {
  static TreeRegistry registry;
  return registry;
}

/// A thread that acts for somebody else has a token of its own.
std::optional<unsigned> rightsOfThread() {
  HANDLE token = nullptr;
  if (!OpenThreadToken(GetCurrentThread(), TOKEN_QUERY, TRUE, &token))
    return GetLastError() == ERROR_NO_TOKEN ? std::optional(0u) : std::nullopt;
  CloseHandle(token);
  return std::nullopt;
}

}  // namespace PAKU_3_1::internal
