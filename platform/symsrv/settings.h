// What can be set, with the values that suit people.

#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace symsrv_1_0::internal {

struct Limits {
  std::chrono::milliseconds connect{10000};
  std::chrono::milliseconds firstByte{30000};   ///< From the connection to the answer.
  std::chrono::milliseconds slowWindow{30000};  ///< In which at least `slowBytes` must come.
  std::uint64_t slowBytes = std::uint64_t{30} << 10;
  std::chrono::milliseconds total{0};  ///< Of one request; 0: none.
  std::uint64_t bytes = std::uint64_t{4} << 30;
  int redirects = 5;
  int tries = 2;  ///< Of a server that is busy.
  std::chrono::milliseconds betweenTries{300};
};

struct Settings {
  std::string defaultStore;  ///< Empty: there is none.
  std::string caFile;
  bool looksInLowerCase = false;  ///< Also; caches keep the classic spelling.
  Limits limits;
  std::chrono::seconds missExpiry{600};
  std::chrono::seconds serverExpiry{900};  ///< Of a server that failed, unless it failed for good.
  std::chrono::seconds leastServerExpiry{10};  ///< However soon the server wants to be asked again.
  std::chrono::seconds staleTemporary{24 * 3600};
};

/// Reads the variables
///
///   QUIVER_SYMBOL_CACHE        the default store
///   QUIVER_SYMBOL_CA           a file of certificates, for servers of one's own
///   QUIVER_SYMBOL_TIMEOUT      seconds for one request, connecting and answering included
///   QUIVER_SYMBOL_LOWER_CASE   set: looks under keys in lower case too
///   QUIVER_SYMBOL_LOG          set: says on standard error what was asked and answered
Settings settingsFromEnvironment();

/// Returns where the system's users have their caches, with a folder for this program's symbols.
/// Empty when the system does not tell.
std::string systemDefaultStore();

}  // namespace symsrv_1_0::internal
