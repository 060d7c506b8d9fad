// What a binary or symbol file says of itself: the part of it that symbol servers go by.

#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace quiver_tool {

struct FileIdentity {
  std::string format;                        ///< For example "PE32+", "ELF64", "PDB".
  std::optional<std::string> guid;           ///< With dashes. Absent in files of the older kind.
  std::optional<std::uint32_t> signature;    ///< In the place of a GUID.
  std::optional<std::uint32_t> age;          ///< Of the link that made binary and symbol file.
  std::optional<std::string> buildId;        ///< Lower-case hexadecimal digits.
  std::optional<std::string> symbolFile;     ///< As recorded, which may be a path.
  std::optional<std::string> storeKey;       ///< Where stores keep the symbol file.
  std::optional<std::uint32_t> timeStamp;    ///< Of a PE file.
  std::optional<std::uint32_t> sizeOfImage;  ///< Of a PE file.
  std::uint64_t size = 0;                    ///< Bytes.
  std::wstring md5;
};

struct IdentifiedFile {
  std::wstring path;
  std::optional<FileIdentity> identity;
  std::string reason;  ///< Why there is none.
};

IdentifiedFile identify(const std::wstring& path);

inline constexpr const char* kNoIdentity = "-";

/// Returns the identity for people: "build-id 3f0a", or GUID and age; `kNoIdentity` when there is
/// none.
std::string identityText(const FileIdentity& identity);

}  // namespace quiver_tool
