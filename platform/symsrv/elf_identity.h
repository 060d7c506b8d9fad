// What an ELF file says of itself and of its debug file.

#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "symsrv/byte_source.h"

namespace symsrv_1_0::internal {

/// The section .gnu_debuglink.
struct DebugLink {
  std::string name;  ///< As recorded. Never opened.
  std::uint32_t crc = 0;
};

struct ElfIdentity {
  bool is64Bit = false;
  std::string buildId;  ///< Raw bytes, 2 to 64. Empty when the file has none.
  std::optional<DebugLink> debugLink;
  bool hasDebugInformation = false;  ///< Or at least a table of symbols.
  bool isComplete = false;           ///< The section table and what it lists lie inside the file.
};

/// Returns nothing for what is no ELF file.
std::optional<ElfIdentity> readElfIdentity(IByteSource& source);

}  // namespace symsrv_1_0::internal
