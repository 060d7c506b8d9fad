// From an identity to places.

#include "symsrv/sought_file.h"

#include <algorithm>

#include "symsrv/safe_name.h"
#include "symsrv/text.h"

namespace symsrv_1_0::internal {
namespace {

SoughtResult nothing(std::string reason) {
  return {std::nullopt, std::move(reason)};
}

/// Names by which servers and other clients tell what kind of store they see.
bool isNameOfAStoresOwn(const std::string& name) {
  for (const char* own : {"index2.txt", "pingme.txt", "wantsptr.txt", "000admin", ".misses"})
    if (equalIgnoreCase(name, own))
      return true;
  return false;
}

Place keyed(std::string name, std::string id) {
  Place place;
  place.isKeyed = true;
  place.file = name;
  place.folders = {std::move(name), std::move(id)};
  return place;
}

/// Binaries without a name for their symbol file exist: the linker knew only the identity. What
/// belongs to x.dll is then called x.pdb.
std::string symbolFileName(const CodeView& record, std::string_view binaryName) {
  if (!record.name.empty())
    return std::string(lastComponent(record.name));
  const std::string_view binary = lastComponent(binaryName);
  return std::string(binary.substr(0, binary.rfind('.'))) + ".pdb";
}

SoughtResult soughtByCodeView(const CodeView& record, std::string_view binaryName) {
  SoughtFile sought;
  sought.codeView = record;
  sought.name = symbolFileName(record, binaryName);
  if (!isSafeComponent(sought.name) || isNameOfAStoresOwn(sought.name))
    return nothing("unsafe symbol file name \"" + printable(record.name) + "\"");
  sought.places.push_back(keyed(sought.name, codeViewId(record)));
  if (record.age == 0 && record.hasGuid && !record.isPortable)
    sought.places.push_back(keyed(sought.name, guidDigits(record.guid)));
  return {std::move(sought), {}};
}

std::string paddedId(const std::string& buildId) {
  std::string id = buildId;
  if (id.size() >= 8 && id.size() < 20)
    id.resize(20);
  return lowerHexBytes(id);
}

SoughtFile soughtByBuildId(const ElfIdentity& elf) {
  const std::string id = lowerHexBytes(elf.buildId);
  SoughtFile sought;
  sought.name = id.substr(2) + ".debug";
  Place local{{".build-id", id.substr(0, 2)}, sought.name};
  local.onServers = false;
  Place remote{{"buildid", id}, "debuginfo"};
  remote.inDirectories = false;
  sought.places = {local, remote, keyed("_.debug", "elf-buildid-sym-" + paddedId(elf.buildId))};
  return sought;
}

SoughtResult soughtByElf(const ElfIdentity& elf) {
  SoughtFile sought;
  if (!elf.buildId.empty()) {
    sought = soughtByBuildId(elf);
  } else if (elf.debugLink) {
    sought.name = lastComponent(elf.debugLink->name);
    if (!isSafeComponent(sought.name))
      return nothing("unsafe debug file name \"" + printable(elf.debugLink->name) + "\"");
    Place local{{}, sought.name};
    local.onServers = false;
    sought.places = {local};
  } else {
    return nothing("the binary has neither a build id nor the name of a debug file");
  }
  sought.elf = elf;
  return {std::move(sought), {}};
}

}  // namespace

std::vector<std::string> Place::folderNames(bool hasTwoTiers) const {
  std::vector<std::string> names = folders;
  if (isKeyed && hasTwoTiers) {
    // Two characters, which may be more than two bytes.
    std::size_t end = 0;
    for (int i = 0; i < 2 && end < file.size(); ++i) do {
        ++end;
      } while (end < file.size() && (static_cast<unsigned char>(file[end]) & 0xC0) == 0x80);
    const std::string tier = file.substr(0, end);
    // "a." is no folder name everywhere; such a file stays in one tier.
    if (isSafeComponent(tier))
      names.insert(names.begin(), tier);
  }
  return names;
}

std::vector<std::string> Place::components(bool hasTwoTiers, const std::string& fileName) const {
  std::vector<std::string> names = folderNames(hasTwoTiers);
  names.push_back(fileName);
  return names;
}

const Place* SoughtFile::cachePlace() const {
  if (isByChecksum())
    return nullptr;
  const auto place =
      std::find_if(places.begin(), places.end(), [](const Place& p) { return p.inDirectories; });
  return place == places.end() ? nullptr : &*place;
}

std::string codeViewId(const CodeView& record) {
  if (record.isPortable)
    return guidDigits(record.guid) + "FFFFFFFF";
  if (record.hasGuid)
    return guidDigits(record.guid) + lowerHex(record.age);
  return upperHex(record.signature, 8) + lowerHex(record.age);
}

void alsoInLowerCase(SoughtFile& sought) {
  const std::vector<Place> classic = sought.places;
  for (Place place : classic) {
    if (!place.isKeyed)
      continue;
    for (std::string& folder : place.folders) folder = toLower(folder);
    place.file = toLower(place.file);
    const auto isSame = [&](const Place& p) {
      return p.folders == place.folders && p.file == place.file;
    };
    if (std::none_of(sought.places.begin(), sought.places.end(), isSame))
      sought.places.push_back(std::move(place));
  }
}

SoughtResult soughtFileOf(IByteSource& binary, std::string_view binaryName) {
  if (const std::optional<ElfIdentity> elf = readElfIdentity(binary))
    return soughtByElf(*elf);
  const std::optional<PeIdentity> pe = readPeIdentity(binary);
  if (!pe)
    return nothing("the binary is neither a PE nor an ELF file");
  if (!pe->codeView)
    return nothing("the binary names no symbol file");
  return soughtByCodeView(*pe->codeView, binaryName);
}

std::string SoughtFile::identity() const {
  if (codeView)
    return name + "/" + codeViewId(*codeView);
  if (!isByChecksum())
    return lowerHexBytes(elf->buildId);
  return elf->debugLink ? name + " " + lowerHex(elf->debugLink->crc, 8) : name;
}

}  // namespace symsrv_1_0::internal
