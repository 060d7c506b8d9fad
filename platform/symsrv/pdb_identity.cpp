// Reads the identity of symbol files.

#include "symsrv/pdb_identity.h"

#include <algorithm>
#include <string>

namespace symsrv_1_0::internal {
namespace {

constexpr std::uint64_t kMapPosition = 52;
constexpr std::uint32_t kNilStream = 0xFFFFFFFF;
constexpr std::uint32_t kStreamInfo = 1;
constexpr std::uint32_t kStreamDbi = 3;
// Versions from this one on have a GUID, but for one that was never released.
constexpr std::uint32_t kFirstVersionWithGuid = 20000404;

/// The container as far as it is needed: bytes of the directory, first blocks of streams.
class Msf final {
 public:
  explicit Msf(IByteSource& source) : m_file(source) {}

  bool open();

  /// Returns the place in the file of a stream's first `needed` bytes, which lie in one block.
  /// Nothing when the stream is shorter or is not there.
  std::optional<std::uint64_t> stream(std::uint32_t index, std::uint32_t needed);

  FieldReader& file() { return m_file; }

 private:
  std::uint64_t blocksOf(std::uint64_t size) const {
    return (size + m_blockSize - 1) / m_blockSize;
  }
  bool isBlock(std::uint32_t number) const { return number != 0 && number < m_blockCount; }

  std::optional<std::uint32_t> directoryWord(std::uint64_t index);
  std::optional<std::uint64_t> streamSize(std::uint32_t index);

  FieldReader m_file;
  std::uint32_t m_blockSize = 0;
  std::uint32_t m_blockCount = 0;
  std::uint32_t m_directorySize = 0;
  std::uint32_t m_streamCount = 0;
};

bool Msf::open() {
  m_blockSize = m_file.u32(32);
  const std::uint32_t freeMap = m_file.u32(36);
  m_blockCount = m_file.u32(40);
  m_directorySize = m_file.u32(44);
  const bool isPowerOfTwo = (m_blockSize & (m_blockSize - 1)) == 0;
  if (!m_file.ok() || m_blockSize < 512 || m_blockSize > 65536 || !isPowerOfTwo)
    return false;
  if ((freeMap != 1 && freeMap != 2) || m_directorySize < 4 || m_directorySize % 4 != 0)
    return false;
  // A file that is shorter than its blocks was cut off.
  const std::uint64_t complete = std::uint64_t{m_blockCount} * m_blockSize;
  if (complete > m_file.size() || m_directorySize > complete)
    return false;
  const std::uint64_t mapBlocks = blocksOf(blocksOf(m_directorySize) * 4);
  if (kMapPosition + mapBlocks * 4 > m_blockSize)
    return false;
  const std::optional<std::uint32_t> count = directoryWord(0);
  m_streamCount = count.value_or(0);
  return count && 4 + 4ull * m_streamCount <= m_directorySize;
}

/// The directory is reached in two steps: block 0 has the numbers of the blocks that have the
/// numbers of the directory's blocks.
std::optional<std::uint32_t> Msf::directoryWord(std::uint64_t index) {
  const std::uint64_t at = index * 4;
  if (at + 4 > m_directorySize)
    return std::nullopt;
  const std::uint64_t entry = at / m_blockSize * 4;
  const std::uint32_t mapBlock = m_file.u32(kMapPosition + entry / m_blockSize * 4);
  if (!isBlock(mapBlock))
    return std::nullopt;
  const std::uint32_t block =
      m_file.u32(std::uint64_t{mapBlock} * m_blockSize + entry % m_blockSize);
  if (!isBlock(block))
    return std::nullopt;
  const std::uint32_t word = m_file.u32(std::uint64_t{block} * m_blockSize + at % m_blockSize);
  return m_file.ok() ? std::optional(word) : std::nullopt;
}

std::optional<std::uint64_t> Msf::streamSize(std::uint32_t index) {
  if (index >= m_streamCount)
    return std::nullopt;
  const std::optional<std::uint32_t> size = directoryWord(1 + std::uint64_t{index});
  if (!size)
    return std::nullopt;
  return *size == kNilStream ? 0 : *size;
}

std::optional<std::uint64_t> Msf::stream(std::uint32_t index, std::uint32_t needed) {
  std::uint64_t before = 0;  // blocks of the streams in front
  for (std::uint32_t i = 0; i < index; ++i) {
    const std::optional<std::uint64_t> size = streamSize(i);
    if (!size)
      return std::nullopt;
    before += blocksOf(*size);
  }
  if (streamSize(index).value_or(0) < needed)
    return std::nullopt;
  const std::optional<std::uint32_t> block = directoryWord(1 + m_streamCount + before);
  if (!block || !isBlock(*block))
    return std::nullopt;
  return std::uint64_t{*block} * m_blockSize;
}

bool hasGuid(std::uint32_t version) {
  return version >= kFirstVersionWithGuid;
}

}  // namespace

std::optional<PdbIdentity> readPdbIdentity(IByteSource& source) {
  Msf msf(source);
  if (recogniseContainer(source) != Container::kPdb || !msf.open())
    return std::nullopt;
  const std::optional<std::uint64_t> info = msf.stream(kStreamInfo, 12);
  if (!info)
    return std::nullopt;
  PdbIdentity identity;
  FieldReader& file = msf.file();
  const std::uint32_t version = file.u32(*info);
  identity.signature = file.u32(*info + 4);
  identity.age = file.u32(*info + 8);
  if (hasGuid(version)) {
    if (!msf.stream(kStreamInfo, 28))
      return std::nullopt;
    identity.hasGuid = file.bytes(*info + 12, identity.guid.data(), identity.guid.size());
  }
  const std::optional<std::uint64_t> dbi = msf.stream(kStreamDbi, 12);
  if (dbi && file.u32(*dbi) == 0xFFFFFFFF)  // the header of today; an older one has no age
    identity.dbiAge = file.u32(*dbi + 8);
  return file.ok() ? std::optional(identity) : std::nullopt;
}

std::optional<PdbIdentity> readPortablePdbIdentity(IByteSource& source) {
  FieldReader file(source);
  if (recogniseContainer(source) != Container::kPortablePdb)
    return std::nullopt;
  const std::uint64_t versionSize = file.u32(12);
  const std::uint32_t streams = file.u16(16 + versionSize + 2);
  std::uint64_t at = 16 + versionSize + 4;
  std::optional<PdbIdentity> identity;
  for (std::uint32_t i = 0; i < std::min<std::uint32_t>(streams, 64); ++i) {
    const std::uint64_t offset = file.u32(at);
    const std::uint64_t size = file.u32(at + 4);
    char name[32] = {};
    for (std::size_t n = 0; n < sizeof name - 1; ++n) {
      name[n] = static_cast<char>(file.u8(at + 8 + n));
      if (name[n] == '\0')
        break;
    }
    const std::string text = name;
    if (!file.ok() || offset + size > file.size())
      return std::nullopt;  // cut off
    if (text == "#Pdb" && size >= 20) {
      identity.emplace();
      identity->hasGuid = file.bytes(offset, identity->guid.data(), identity->guid.size());
      identity->portableStamp = file.u32(offset + 16);
    }
    at += 8 + (text.size() + 4) / 4 * 4;
  }
  return file.ok() ? identity : std::nullopt;
}

}  // namespace symsrv_1_0::internal
