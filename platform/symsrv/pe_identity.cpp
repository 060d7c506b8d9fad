// Walks from the DOS header to the debug directory, every step inside the file.

#include "symsrv/pe_identity.h"

#include <algorithm>

namespace symsrv_1_0::internal {
namespace {

constexpr std::uint16_t kDosMagic = 0x5A4D;
constexpr std::uint32_t kPeMagic = 0x00004550;
constexpr std::uint16_t kPe32 = 0x10B;
constexpr std::uint16_t kPe32Plus = 0x20B;
constexpr std::uint32_t kDebugDirectory = 6;
constexpr std::uint32_t kDebugEntrySize = 28;
constexpr std::uint32_t kMaxDebugEntries = 64;  // real files have a handful
constexpr std::uint32_t kTypeCodeView = 2;
constexpr std::uint16_t kPortableMark = 0x504D;
constexpr std::uint32_t kRsds = 0x53445352;
constexpr std::uint32_t kNb10 = 0x3031424E;
constexpr std::uint32_t kMaxName = 4096;

struct Headers {
  std::uint64_t optional = 0;
  std::uint32_t optionalSize = 0;
  std::uint32_t sectionCount = 0;
  PeIdentity identity;
};

std::optional<Headers> readHeaders(FieldReader& file) {
  Headers headers;
  const std::uint64_t pe = file.u32(0x3C);
  if (file.u16(0) != kDosMagic || pe == 0 || file.u32(pe) != kPeMagic)
    return std::nullopt;
  headers.identity.machine = file.u16(pe + 4);
  headers.sectionCount = file.u16(pe + 6);
  headers.identity.timeStamp = file.u32(pe + 8);
  headers.optionalSize = file.u16(pe + 20);
  headers.optional = pe + 24;
  const std::uint16_t magic = file.u16(headers.optional);
  headers.identity.is64Bit = magic == kPe32Plus;
  headers.identity.sizeOfImage = file.u32(headers.optional + 56);
  if (!file.ok() || (magic != kPe32 && magic != kPe32Plus) || headers.optionalSize < 60)
    return std::nullopt;
  return headers;
}

/// Returns where in the file the bytes of an address lie.
std::optional<std::uint64_t> fileOffset(FieldReader& file,
                                        const Headers& headers,
                                        std::uint32_t rva) {
  const std::uint64_t table = headers.optional + headers.optionalSize;
  for (std::uint32_t i = 0; i < headers.sectionCount; ++i) {
    const std::uint64_t section = table + 40ull * i;
    const std::uint32_t virtualSize = file.u32(section + 8);
    const std::uint32_t address = file.u32(section + 12);
    const std::uint32_t rawSize = file.u32(section + 16);
    const std::uint32_t rawOffset = file.u32(section + 20);
    if (!file.ok())
      return std::nullopt;
    if (rva < address || rva - address >= std::max(virtualSize, rawSize))
      continue;
    if (rva - address >= rawSize)
      return std::nullopt;  // zeros that the loader makes; nothing of them is in the file
    return std::uint64_t{rva - address} + rawOffset;
  }
  if (rva < file.u32(headers.optional + 60))
    return rva;
  return std::nullopt;
}

/// Reads the text that ends with a NUL within `size` bytes.
std::optional<std::string> readName(FieldReader& file, std::uint64_t at, std::uint32_t size) {
  std::string text(std::min(size, kMaxName), '\0');
  if (at > file.size())
    return std::nullopt;
  text.resize(static_cast<std::size_t>(std::min<std::uint64_t>(text.size(), file.size() - at)));
  if (!file.bytes(at, text.data(), text.size()))
    return std::nullopt;
  const std::size_t end = text.find('\0');
  if (end == std::string::npos)
    return std::nullopt;
  text.resize(end);
  return text;
}

/// Old records have the code page of the machine that linked. Each byte becomes the character that
/// it is in Latin-1: right for ASCII, and always valid text.
std::string fromAnsi(const std::string& bytes) {
  std::string text;
  for (const char c : bytes) {
    const auto value = static_cast<unsigned char>(c);
    if (value < 0x80) {
      text += c;
    } else {
      text += static_cast<char>(0xC0 | value >> 6);
      text += static_cast<char>(0x80 | (value & 0x3F));
    }
  }
  return text;
}

std::optional<CodeView> readRsds(FieldReader& file, std::uint64_t at, std::uint32_t size) {
  CodeView record;
  record.hasGuid = true;
  if (size < 25 || !file.bytes(at + 4, record.guid.data(), record.guid.size()))
    return std::nullopt;
  record.age = file.u32(at + 20);
  std::optional<std::string> name = readName(file, at + 24, size - 24);
  if (!name)
    return std::nullopt;
  record.name = *std::move(name);
  return record;
}

std::optional<CodeView> readNb10(FieldReader& file, std::uint64_t at, std::uint32_t size) {
  CodeView record;
  if (size < 17 || file.u32(at + 4) != 0)
    return std::nullopt;
  record.signature = file.u32(at + 8);
  record.age = file.u32(at + 12);
  const std::optional<std::string> name = readName(file, at + 16, size - 16);
  if (!name)
    return std::nullopt;
  record.name = fromAnsi(*name);
  return record;
}

/// Reads one entry of the debug directory. A bad one does not spoil the others.
std::optional<CodeView> readEntry(IByteSource& source, std::uint64_t entry) {
  FieldReader file(source);
  const std::uint32_t size = file.u32(entry + 16);
  // Through the place in the file: the address may be 0.
  const std::uint64_t at = file.u32(entry + 24);
  if (file.u32(entry + 12) != kTypeCodeView || !file.ok())
    return std::nullopt;
  const std::uint32_t format = file.u32(at);
  std::optional<CodeView> record;
  if (format == kRsds)
    record = readRsds(file, at, size);
  else if (format == kNb10)
    record = readNb10(file, at, size);
  if (!record || !file.ok())
    return std::nullopt;
  record->isPortable = record->hasGuid && file.u16(entry + 10) == kPortableMark;
  record->portableStamp = file.u32(entry + 4);
  return record;
}

std::optional<CodeView> readCodeView(IByteSource& source, const Headers& headers) {
  FieldReader file(source);
  const std::uint64_t counts = headers.identity.is64Bit ? 108 : 92;
  const std::uint64_t directory = counts + 4 + 8ull * kDebugDirectory;
  if (directory + 8 > headers.optionalSize ||
      file.u32(headers.optional + counts) <= kDebugDirectory)
    return std::nullopt;
  const std::uint32_t address = file.u32(headers.optional + directory);
  const std::uint32_t size = file.u32(headers.optional + directory + 4);
  if (!file.ok() || address == 0)
    return std::nullopt;
  const std::optional<std::uint64_t> start = fileOffset(file, headers, address);
  if (!start)
    return std::nullopt;
  const std::uint32_t count = std::min(size / kDebugEntrySize, kMaxDebugEntries);
  for (std::uint32_t i = 0; i < count; ++i)
    if (std::optional<CodeView> record =
            readEntry(source, *start + std::uint64_t{kDebugEntrySize} * i))
      return record;
  return std::nullopt;
}

}  // namespace

std::optional<PeIdentity> readPeIdentity(IByteSource& source) {
  FieldReader file(source);
  std::optional<Headers> headers = readHeaders(file);
  if (!headers)
    return std::nullopt;
  headers->identity.codeView = readCodeView(source, *headers);
  return headers->identity;
}

}  // namespace symsrv_1_0::internal
