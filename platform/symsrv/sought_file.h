// The symbol file that a binary asks for, and where stores keep it.
//
//   store      one tier    name/ID/name            ID: GUID and age, or signature and age
//   store      two tiers   na/name/ID/name         when the root has "index2.txt"
//   ELF        directory   .build-id/ab/cdef.debug
//   ELF        server      buildid/abcdef/debuginfo
//   ELF        either      _.debug/elf-buildid-sym-ID/_.debug

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "symsrv/elf_identity.h"
#include "symsrv/pe_identity.h"

namespace symsrv_1_0::internal {

/// One place below the root of a store.
struct Place {
  std::vector<std::string> folders;
  std::string file;
  bool isKeyed = false;  ///< A symbol store's own layout: two tiers, compressed files, pointers.
  bool inDirectories = true;
  bool onServers = true;

  /// Returns folders and file, with a folder for the first letters in front for two tiers.
  std::vector<std::string> components(bool hasTwoTiers, const std::string& fileName) const;
  std::vector<std::string> folderNames(bool hasTwoTiers) const;
};

/// Exactly one of the two identities is set.
struct SoughtFile {
  std::optional<CodeView> codeView;
  std::optional<ElfIdentity> elf;
  std::string name;           ///< Of the file, for people.
  std::vector<Place> places;  ///< In the order in which they are tried.

  /// Returns the place where caches keep the file. Null when nothing tells two builds apart by
  /// name; such a file is used where it lies.
  const Place* cachePlace() const;

  /// Returns what tells the file from those of other builds, for people: "app.pdb/ID", or the build
  /// ID or the name and check sum of an ELF file.
  std::string identity() const;

  /// Returns true when only the name and a checksum of the content are known.
  bool isByChecksum() const { return elf && elf->buildId.empty(); }
};

struct SoughtResult {
  std::optional<SoughtFile> file;
  std::string reason;  ///< Why no file is sought.
};

/// `binaryName` serves where the binary names no symbol file: "x.dll" makes "x.pdb".
SoughtResult soughtFileOf(IByteSource& binary, std::string_view binaryName);

/// Adds places with the keys in lower case, for stores that tell the cases apart and have them so.
void alsoInLowerCase(SoughtFile& sought);

/// Returns the identity part of a key.
std::string codeViewId(const CodeView& record);

}  // namespace symsrv_1_0::internal
