// What a PE binary says of itself and of its symbol file.
//
//   offset   DOS header          PE header P           optional header O = P+24
//   0        "MZ"                "PE\0\0"              magic: 10B or 20B
//   ..       60: P               8: time stamp         56: size of the image
//                                20: size of O         data directory 6: debug entries

#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "symsrv/byte_source.h"
#include "symsrv/guid.h"

namespace symsrv_1_0::internal {

/// The record that names the symbol file.
struct CodeView {
  bool hasGuid = false;  ///< RSDS; otherwise NB10, which has a 32-bit signature.
  Guid guid{};
  std::uint32_t signature = 0;
  std::uint32_t age = 0;
  std::string name;         ///< As recorded: any path of any system, or empty. Never opened.
  bool isPortable = false;  ///< The symbol file is a portable one; the age means nothing then.
  std::uint32_t portableStamp = 0;
};

struct PeIdentity {
  std::uint16_t machine = 0;
  bool is64Bit = false;
  std::uint32_t timeStamp = 0;
  std::uint32_t sizeOfImage = 0;
  std::optional<CodeView> codeView;  ///< The first record that can be read.
};

/// Returns nothing for what is no PE file, 32 or 64 bit.
std::optional<PeIdentity> readPeIdentity(IByteSource& source);

}  // namespace symsrv_1_0::internal
