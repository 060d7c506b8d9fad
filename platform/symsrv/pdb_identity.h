// What a symbol file says of the build it belongs to.
//
// A file of the usual kind is a container of streams, cut into blocks:
//
//   block 0: magic, block size, number of blocks, size of the directory, and where its map lies
//   the map: numbers of the blocks that hold the directory
//   the directory: how many streams, their sizes, the numbers of their blocks
//   stream 1: version, signature, age, GUID       stream 3: an age of its own
//
// Only these few bytes are ever read; files of several gibibytes cost no more than small ones.

#pragma once

#include <cstdint>
#include <optional>

#include "symsrv/byte_source.h"
#include "symsrv/guid.h"

namespace symsrv_1_0::internal {

/// What the first bytes of a file say it is.
enum class Container {
  kUnknown,
  kPdb,          ///< The usual symbol file (MSF 7).
  kOldPdb,       ///< Symbol files that go with NB10 (MSF 2).
  kPortablePdb,  ///< Managed code's own symbol files.
  kMsfz,         ///< A compressed container of this century; not read here.
  kElf,
  kPe,
  kCabinet,  ///< A cabinet, to be expanded.
  kSzdd,     ///< Output of an older compressor, to be expanded.
  kGzip,     ///< A transfer encoding that nobody took off.
  kMarkup    ///< A page for people in the place of a file.
};

Container recogniseContainer(IByteSource& source);

/// Returns a word for people, such as "portable PDB".
const char* containerName(Container container);

struct PdbIdentity {
  bool hasGuid = false;
  Guid guid{};
  std::uint32_t signature = 0;
  std::uint32_t age = 0;                ///< Goes up when tools rewrite the file.
  std::optional<std::uint32_t> dbiAge;  ///< That of the link; not in every file.
  std::uint32_t portableStamp = 0;      ///< Of a portable file, behind its GUID.
};

/// Returns nothing for a file that is damaged, cut off or of another kind.
std::optional<PdbIdentity> readPdbIdentity(IByteSource& source);

/// The same for a portable symbol file.
std::optional<PdbIdentity> readPortablePdbIdentity(IByteSource& source);

}  // namespace symsrv_1_0::internal
