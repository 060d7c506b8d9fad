// Compares identities.
//
// Ages of a symbol file: tools that rewrite it after the link raise the age in its first part and
// leave that in its second part alone. So the binary's age may be lower than the first, and must be
// equal to the second where there is one.

#include "symsrv/verify.h"

#include <algorithm>
#include <array>
#include <vector>

#include "symsrv/pdb_identity.h"

namespace symsrv_1_0::internal {
namespace {

std::string ofAnotherBuild(const char* what) {
  return std::string("of another build: ") + what + " differs";
}

std::string comparePdb(const PdbIdentity& pdb, const CodeView& record) {
  if (record.hasGuid && (!pdb.hasGuid || pdb.guid != record.guid))
    return ofAnotherBuild("the GUID");
  if (!record.hasGuid && pdb.signature != record.signature)
    return ofAnotherBuild("the signature");
  if (record.age > pdb.age)
    return ofAnotherBuild("the age");
  if (pdb.dbiAge.value_or(0) != 0 && *pdb.dbiAge != record.age)
    return ofAnotherBuild("the age");
  return {};
}

std::string wrongKind(IByteSource& file) {
  return std::string("not the expected kind of file, but: ") +
         containerName(recogniseContainer(file));
}

std::string checkPdb(IByteSource& file, const CodeView& record) {
  if (recogniseContainer(file) == Container::kPortablePdb) {
    const std::optional<PdbIdentity> pdb = readPortablePdbIdentity(file);
    if (!pdb)
      return "damaged or cut off";
    const bool isSame = pdb->guid == record.guid && pdb->portableStamp == record.portableStamp;
    return record.isPortable && isSame ? "" : ofAnotherBuild("the identity");
  }
  if (recogniseContainer(file) != Container::kPdb)
    return wrongKind(file);
  const std::optional<PdbIdentity> pdb = readPdbIdentity(file);
  return pdb ? comparePdb(*pdb, record) : "damaged or cut off";
}

std::array<std::uint32_t, 256> crcTable() {
  std::array<std::uint32_t, 256> table{};
  for (std::uint32_t i = 0; i < table.size(); ++i) {
    std::uint32_t value = i;
    for (int bit = 0; bit < 8; ++bit) value = value & 1 ? 0xEDB88320 ^ value >> 1 : value >> 1;
    table[i] = value;
  }
  return table;
}

std::optional<std::uint32_t> crcOf(IByteSource& file) {
  static const std::array<std::uint32_t, 256> kTable = crcTable();
  std::vector<unsigned char> buffer(std::size_t{64} << 10);
  std::uint32_t crc = 0xFFFFFFFF;
  for (std::uint64_t at = 0; at < file.size();) {
    const std::size_t count =
        static_cast<std::size_t>(std::min<std::uint64_t>(buffer.size(), file.size() - at));
    if (!file.read(at, buffer.data(), count))
      return std::nullopt;
    for (std::size_t i = 0; i < count; ++i) crc = kTable[(crc ^ buffer[i]) & 0xFF] ^ crc >> 8;
    at += count;
  }
  return ~crc;
}

std::string checkElf(IByteSource& file, const ElfIdentity& sought) {
  const std::optional<ElfIdentity> found = readElfIdentity(file);
  if (!found)
    return wrongKind(file);
  if (!found->isComplete)
    return "damaged or cut off";
  if (!sought.buildId.empty() && found->buildId != sought.buildId)
    return ofAnotherBuild("the build id");
  // A stripped binary has the build id of its debug file, and may lie in its place.
  if (!sought.buildId.empty())
    return found->hasDebugInformation ? "" : "has no debug information";
  return crcOf(file) == sought.debugLink->crc ? "" : ofAnotherBuild("the checksum");
}

}  // namespace

std::string mismatch(IByteSource& file, const SoughtFile& sought) {
  if (file.size() == 0)
    return "empty";
  return sought.codeView ? checkPdb(file, *sought.codeView) : checkElf(file, *sought.elf);
}

}  // namespace symsrv_1_0::internal
