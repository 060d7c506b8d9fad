// Looks for the build id in the note segments, then in the note sections: a file that holds debug
// information alone may keep program headers that no longer fit it.

#include "symsrv/elf_identity.h"

#include <algorithm>
#include <string_view>

namespace symsrv_1_0::internal {
namespace {

constexpr std::uint32_t kSegmentNote = 4;
constexpr std::uint32_t kSectionSymbols = 2;
constexpr std::uint32_t kSectionNote = 7;
constexpr std::uint32_t kSectionNoBits = 8;
constexpr std::uint32_t kNoteBuildId = 3;
constexpr std::uint64_t kMaxEntries = 100000;  // of a table; real ones have dozens
constexpr unsigned kMaxNotes = 4096;           // in all of a file
constexpr std::uint64_t kMaxLinkName = 1024;

struct Section {
  std::uint32_t name = 0;
  std::uint32_t type = 0;
  std::uint64_t offset = 0;
  std::uint64_t size = 0;
};

class Elf final {
 public:
  explicit Elf(IByteSource& source, ByteOrder order, bool is64Bit)
      : m_file(source, order), m_64(is64Bit) {}

  bool readHeader();
  std::string buildId();
  std::optional<DebugLink> debugLink();
  bool hasDebugInformation();
  bool isComplete();

 private:
  std::uint64_t word(std::uint64_t at) { return m_64 ? m_file.u64(at) : m_file.u32(at); }
  /// Returns the field's offset by class.
  std::uint64_t by(std::uint64_t at32, std::uint64_t at64) const { return m_64 ? at64 : at32; }

  Section section(std::uint64_t index);
  bool fits(std::uint64_t offset, std::uint64_t size) const {
    return offset <= m_file.size() && size <= m_file.size() - offset;
  }
  std::string buildIdIn(std::uint64_t offset, std::uint64_t size, std::uint64_t alignment);
  std::string buildIdInSegments();
  std::string buildIdInSections();
  std::optional<Section> nameSection();
  bool isNamed(const Section& section, const Section& names, std::string_view name);

  FieldReader m_file;
  bool m_64;
  std::uint64_t m_segments = 0, m_segmentSize = 0, m_segmentCount = 0;
  std::uint64_t m_sections = 0, m_sectionSize = 0, m_sectionCount = 0, m_nameSection = 0;
  unsigned m_notes = 0;
};

bool Elf::readHeader() {
  m_segments = word(by(28, 32));
  m_sections = word(by(32, 40));
  m_segmentSize = m_file.u16(by(42, 54));
  m_segmentCount = m_file.u16(by(44, 56));
  m_sectionSize = m_file.u16(by(46, 58));
  m_sectionCount = m_file.u16(by(48, 60));
  m_nameSection = m_file.u16(by(50, 62));
  if (!m_file.ok())
    return false;
  if (m_sections == 0 || m_sections > m_file.size() || m_sectionSize < by(40, 64)) {
    m_sectionCount = 0;
    return true;
  }
  // Counts that are too large for their fields stand in section 0.
  if (!fits(m_sections, m_sectionSize)) {
    m_sectionCount = 0;
    return true;
  }
  if (m_segmentCount == 0xFFFF)
    m_segmentCount = m_file.u32(m_sections + by(28, 44));
  if (m_sectionCount == 0)
    m_sectionCount = word(m_sections + by(20, 32));
  if (m_nameSection == 0xFFFF)
    m_nameSection = m_file.u32(m_sections + by(24, 40));
  return true;
}

Section Elf::section(std::uint64_t index) {
  const std::uint64_t at = m_sections + index * m_sectionSize;
  return {m_file.u32(at), m_file.u32(at + 4), word(at + by(16, 24)), word(at + by(20, 32))};
}

/// Walks notes: two sizes, a type, the name and the description, each padded.
std::string Elf::buildIdIn(std::uint64_t offset, std::uint64_t size, std::uint64_t alignment) {
  if (!fits(offset, size))
    return {};
  const std::uint64_t padding = alignment == 8 ? 7 : 3;
  const std::uint64_t end = offset + size;
  for (std::uint64_t at = offset; end - at >= 12 && m_notes < kMaxNotes; ++m_notes) {
    const std::uint64_t nameSize = m_file.u32(at);
    const std::uint64_t dataSize = m_file.u32(at + 4);
    const std::uint32_t type = m_file.u32(at + 8);
    const std::uint64_t data = (12 + nameSize + padding) & ~padding;
    if (!m_file.ok() || data + dataSize > end - at)
      return {};
    char name[4] = {};
    if (type == kNoteBuildId && nameSize == 4 && m_file.bytes(at + 12, name, 4) &&
        std::string_view(name, 4) == std::string_view("GNU\0", 4) && dataSize >= 2 &&
        dataSize <= 64) {
      std::string id(static_cast<std::size_t>(dataSize), '\0');
      return m_file.bytes(at + data, id.data(), id.size()) ? id : std::string();
    }
    const std::uint64_t next = (data + dataSize + padding) & ~padding;
    if (next > end - at)
      return {};
    at += next;
  }
  return {};
}

std::string Elf::buildIdInSegments() {
  if (m_segments == 0 || m_segments > m_file.size() || m_segmentSize < by(32, 56))
    return {};
  for (std::uint64_t i = 0; i < std::min(m_segmentCount, kMaxEntries); ++i) {
    const std::uint64_t at = m_segments + i * m_segmentSize;
    if (!fits(at, m_segmentSize))
      return {};
    if (m_file.u32(at) != kSegmentNote)
      continue;
    std::string id = buildIdIn(word(at + by(4, 8)), word(at + by(16, 32)), word(at + by(28, 48)));
    if (!id.empty())
      return id;
  }
  return {};
}

std::string Elf::buildIdInSections() {
  for (std::uint64_t i = 0; i < std::min(m_sectionCount, kMaxEntries); ++i) {
    const std::uint64_t at = m_sections + i * m_sectionSize;
    if (!fits(at, m_sectionSize))
      return {};
    const Section note = section(i);
    if (note.type != kSectionNote)
      continue;
    std::string id = buildIdIn(note.offset, note.size, word(at + by(32, 48)));
    if (!id.empty())
      return id;
  }
  return {};
}

std::string Elf::buildId() {
  const std::string id = buildIdInSegments();
  return id.empty() ? buildIdInSections() : id;
}

bool Elf::isNamed(const Section& section, const Section& names, std::string_view name) {
  char text[32] = {};
  const std::size_t count = name.size() + 1;
  if (section.name > names.size || count > names.size - section.name || count > sizeof text)
    return false;
  return m_file.bytes(names.offset + section.name, text, count) &&
         std::string_view(text, count - 1) == name && text[count - 1] == '\0';
}

/// Returns the section with the names of the others.
std::optional<Section> Elf::nameSection() {
  if (m_nameSection >= m_sectionCount || !fits(m_sections, (m_nameSection + 1) * m_sectionSize))
    return std::nullopt;
  const Section names = section(m_nameSection);
  return fits(names.offset, names.size) ? std::optional(names) : std::nullopt;
}

std::optional<DebugLink> Elf::debugLink() {
  const std::optional<Section> names = nameSection();
  if (!names)
    return std::nullopt;
  for (std::uint64_t i = 0; i < std::min(m_sectionCount, kMaxEntries); ++i) {
    if (!fits(m_sections + i * m_sectionSize, m_sectionSize))
      return std::nullopt;
    const Section link = section(i);
    if (link.type == kSectionNoBits || !isNamed(link, *names, ".gnu_debuglink"))
      continue;
    if (!fits(link.offset, link.size) || link.size < 8 || link.size > kMaxLinkName)
      return std::nullopt;
    DebugLink result;
    result.name.resize(static_cast<std::size_t>(link.size) - 4);
    m_file.bytes(link.offset, result.name.data(), result.name.size());
    const std::size_t end = result.name.find('\0');
    result.crc = m_file.u32(link.offset + link.size - 4);
    if (!m_file.ok() || end == std::string::npos || end == 0)
      return std::nullopt;
    result.name.resize(end);
    return result;
  }
  return std::nullopt;
}

/// Stripping leaves neither the one nor the other; what is only announced counts for nothing.
bool Elf::hasDebugInformation() {
  const std::optional<Section> names = nameSection();
  for (std::uint64_t i = 0; i < std::min(m_sectionCount, kMaxEntries); ++i) {
    if (!fits(m_sections + i * m_sectionSize, m_sectionSize))
      return false;
    const Section part = section(i);
    if (part.type == kSectionNoBits || part.size == 0)
      continue;
    if (part.type == kSectionSymbols)
      return true;
    if (names && (isNamed(part, *names, ".debug_info") || isNamed(part, *names, ".zdebug_info")))
      return true;
  }
  return false;
}

bool Elf::isComplete() {
  if (m_sectionCount > kMaxEntries || !fits(m_sections, m_sectionCount * m_sectionSize))
    return false;
  for (std::uint64_t i = 1; i < m_sectionCount; ++i) {
    const Section part = section(i);
    if (part.type != 0 && part.type != kSectionNoBits && !fits(part.offset, part.size))
      return false;
  }
  return m_file.ok() && m_sectionCount > 0;
}

}  // namespace

std::optional<ElfIdentity> readElfIdentity(IByteSource& source) {
  FieldReader start(source);
  const bool isElf = start.u32(0) == 0x464C457F;
  const std::uint8_t wordSize = start.u8(4);
  const std::uint8_t order = start.u8(5);
  if (!isElf || !start.ok() || wordSize < 1 || wordSize > 2 || order < 1 || order > 2)
    return std::nullopt;
  const auto open = [&] {
    return Elf(source, order == 1 ? ByteOrder::kLittle : ByteOrder::kBig, wordSize == 2);
  };
  Elf elf = open();
  if (!elf.readHeader())
    return std::nullopt;
  // Each question begins anew: one that runs into nonsense must not spoil the next.
  Elf forLink = elf, forDebugInformation = elf, forSections = elf;
  ElfIdentity identity;
  identity.is64Bit = wordSize == 2;
  identity.buildId = elf.buildId();
  identity.debugLink = forLink.debugLink();
  identity.hasDebugInformation = forDebugInformation.hasDebugInformation();
  identity.isComplete = forSections.isComplete();
  return identity;
}

}  // namespace symsrv_1_0::internal
