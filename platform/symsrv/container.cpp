// Tells what a file is by its first bytes; names and content types lie.

#include <cstring>
#include <string>
#include <string_view>

#include "symsrv/pdb_identity.h"

namespace symsrv_1_0::internal {
namespace {

struct Magic {
  Container container;
  std::string_view bytes;
};

using namespace std::string_view_literals;

const Magic kMagics[] = {
    {Container::kPdb,
     "Microsoft C/C++ MSF 7.00\r\n\x1A"
     "DS\0\0\0"sv},
    {Container::kOldPdb, "Microsoft C/C++ program database 2.00\r\n\x1AJG\0\0"sv},
    {Container::kMsfz,
     "Microsoft MSFZ Container\r\n\x1A"
     "ALD\0\0"sv},
    {Container::kPortablePdb, "BSJB"sv},
    {Container::kElf,
     "\x7F"
     "ELF"sv},
    {Container::kPe, "MZ"sv},
    {Container::kCabinet, "MSCF"sv},
    {Container::kSzdd, "SZDD"sv},
    {Container::kGzip, "\x1F\x8B"sv},
    {Container::kMarkup, "<"sv},
    {Container::kMarkup, "{"sv},
};

}  // namespace

Container recogniseContainer(IByteSource& source) {
  char start[64] = {};
  const std::size_t count =
      source.size() < sizeof start ? static_cast<std::size_t>(source.size()) : sizeof start;
  if (!source.read(0, start, count))
    return Container::kUnknown;
  const std::string_view bytes(start, count);
  for (const Magic& magic : kMagics)
    if (bytes.substr(0, magic.bytes.size()) == magic.bytes)
      return magic.container;
  return Container::kUnknown;
}

const char* containerName(Container container) {
  switch (container) {
    case Container::kUnknown:
      return "unknown format";
    case Container::kPdb:
      return "PDB";
    case Container::kOldPdb:
      return "old PDB";
    case Container::kPortablePdb:
      return "portable PDB";
    case Container::kMsfz:
      return "compressed PDB container, which is not supported";
    case Container::kElf:
      return "ELF";
    case Container::kPe:
      return "PE";
    case Container::kCabinet:
      return "cabinet";
    case Container::kSzdd:
      return "SZDD-compressed file";
    case Container::kGzip:
      return "gzip-encoded file";
    case Container::kMarkup:
      return "page of text";
  }
  return "unknown format";
}

}  // namespace symsrv_1_0::internal
