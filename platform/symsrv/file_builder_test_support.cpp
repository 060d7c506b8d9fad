// Small binaries and symbol files, made by hand.

#include "symsrv/file_builder_test_support.h"

namespace symsrv_1_0::internal {

Bytes& Bytes::put(std::size_t at, std::uint64_t value, unsigned width, bool isBigEndian) {
  std::string bytes;
  for (unsigned i = 0; i < width; ++i) {
    const unsigned shift = 8 * (isBigEndian ? width - 1 - i : i);
    bytes += static_cast<char>(value >> shift & 0xFF);
  }
  return put(at, bytes);
}

Bytes& Bytes::put(std::size_t at, std::string_view bytes) {
  if (m_data.size() < at + bytes.size())
    m_data.resize(at + bytes.size());
  m_data.replace(at, bytes.size(), bytes);
  return *this;
}

namespace {

std::string_view bytesOf(const Guid& guid) {
  return {reinterpret_cast<const char*>(guid.data()), guid.size()};
}

}  // namespace

std::string rsdsRecord(std::string_view name, std::uint32_t age, const Guid& guid) {
  Bytes record;
  record.put(0, "RSDS").put(4, bytesOf(guid)).put32(20, age).put(24, name);
  return record.put(24 + name.size(), 0, 1).data();
}

std::string nb10Record(std::string_view name, std::uint32_t signature, std::uint32_t age) {
  Bytes record;
  record.put(0, "NB10").put32(4, 0).put32(8, signature).put32(12, age).put(16, name);
  return record.put(16 + name.size(), 0, 1).data();
}

Bytes makePe(bool is64Bit, const std::vector<std::string>& records) {
  constexpr std::size_t pe = PeLayout::kPe;
  constexpr std::size_t optional = PeLayout::kOptional;
  const std::size_t counts = optional + (is64Bit ? 108 : 92);
  const std::size_t optionalSize = (is64Bit ? 112 : 96) + 16 * 8;
  const std::size_t section = optional + optionalSize;
  Bytes file(0x800);
  file.put(0, "MZ").put32(0x3C, pe).put(pe, std::string_view("PE\0\0", 4));
  file.put16(pe + 4, is64Bit ? 0x8664 : 0x14C).put16(pe + 6, 1).put32(pe + 8, 0x542D574E);
  file.put16(pe + 20, optionalSize).put16(optional, is64Bit ? 0x20B : 0x10B);
  file.put32(optional + 56, 0xC2000).put32(optional + 60, 0x400).put32(counts, 16);
  file.put32(counts + 4 + 48, 0x1000).put32(counts + 8 + 48, 28 * records.size());
  file.put32(section + 8, 0x400).put32(section + 12, 0x1000).put32(section + 16, 0x400);
  file.put32(section + 20, PeLayout::kDebugDirectory);
  std::size_t at = PeLayout::kRecords;
  for (std::size_t i = 0; i < records.size(); ++i) {
    const std::size_t entry = PeLayout::kDebugDirectory + 28 * i;
    file.put32(entry + 12, 2).put32(entry + 16, records[i].size()).put32(entry + 24, at);
    file.put(at, records[i]);
    at += records[i].size();
  }
  return file;
}

Bytes makePdb(const PdbFields& fields) {
  // Blocks: 0 header, 1 and 2 free maps, 3 map of the directory, 4 directory, 5 and 6 stream 0,
  // 7 stream 1, 8 stream 2, 9 stream 3.
  const std::size_t size = fields.blockSize;
  Bytes file(size * 10);
  file.put(0,
           std::string_view("Microsoft C/C++ MSF 7.00\r\n\x1A"
                            "DS\0\0\0",
                            32));
  file.put32(32, size).put32(36, 1).put32(40, 10).put32(52, 3).put32(3 * size, 4);
  std::size_t at = 4 * size;
  const auto word = [&](std::uint64_t value) {
    file.put32(at, value);
    at += 4;
  };
  word(4 + std::uint64_t{fields.emptyStreams});
  word(size + 1);
  word(28);
  word(16);
  word(fields.hasDbi ? 64 : 0xFFFFFFFF);
  for (std::uint32_t i = 0; i < fields.emptyStreams; ++i) word(0);
  for (const std::uint64_t block : {5u, 6u, 7u, 8u}) word(block);
  if (fields.hasDbi)
    word(9);
  file.put32(44, at - 4 * size);
  file.put32(7 * size, fields.version).put32(7 * size + 4, fields.signature);
  file.put32(7 * size + 8, fields.age).put(7 * size + 12, bytesOf(fields.guid));
  file.put32(9 * size, 0xFFFFFFFF).put32(9 * size + 4, 19990903).put32(9 * size + 8, fields.dbiAge);
  return file;
}

namespace {

/// Puts two notes: one of another kind, then the build id. Returns their size.
std::size_t putNotes(Bytes& file, std::size_t note, const ElfFields& fields) {
  const bool big = fields.isBigEndian;
  file.put(note, 4, 4, big).put(note + 4, 4, 4, big).put(note + 8, 1, 4, big).put(note + 12, "GNU");
  const std::size_t second = note + 20;
  const std::size_t idSize = fields.buildId.size();
  file.put(second, 4, 4, big).put(second + 4, idSize, 4, big).put(second + 8, 3, 4, big);
  file.put(second + 12, "GNU").put(second + 16, fields.buildId);
  return idSize == 0 ? 20 : 36 + (idSize + 3) / 4 * 4;
}

std::string sectionNames(const ElfFields& fields) {
  const std::string names("\0.note\0.shstrtab\0.gnu_debuglink\0", 33);
  return fields.debugSection.empty() ? names : names + fields.debugSection + '\0';
}

}  // namespace

Bytes makeElf(const ElfFields& fields) {
  const bool wide = fields.is64Bit, big = fields.isBigEndian;
  const unsigned word = wide ? 8 : 4;
  const auto by = [&](std::size_t at32, std::size_t at64) { return wide ? at64 : at32; };
  Bytes file(0x600);
  constexpr std::size_t segments = 0x80, note = 0x100, names = 0x200, link = 0x300,
                        sections = 0x400;
  file.put(0,
           "\x7F"
           "ELF")
      .put(4, wide ? 2 : 1, 1)
      .put(5, big ? 2 : 1, 1);
  file.put(by(28, 32), segments, word, big).put(by(32, 40), sections, word, big);
  file.put(by(42, 54), by(32, 56), 2, big).put(by(44, 56), fields.hasSegment ? 1 : 0, 2, big);
  file.put(by(46, 58), by(40, 64), 2, big)
      .put(by(48, 60), fields.debugSection.empty() ? 4 : 5, 2, big)
      .put(by(50, 62), 2, 2, big);
  const std::size_t noteSize = putNotes(file, note, fields);
  file.put(segments, 4, 4, big).put(segments + by(4, 8), note, word, big);
  file.put(segments + by(16, 32), noteSize, word, big).put(segments + by(28, 48), 4, word, big);
  const std::string nameBytes = sectionNames(fields);
  file.put(names, nameBytes);
  const auto section =
      [&](std::size_t index, std::size_t name, std::size_t type, std::size_t at, std::size_t size) {
        const std::size_t header = sections + index * by(40, 64);
        file.put(header, name, 4, big).put(header + 4, type, 4, big);
        file.put(header + by(16, 24), at, word, big).put(header + by(20, 32), size, word, big);
      };
  const std::size_t linkName = (fields.debugLink.size() + 4) / 4 * 4;
  file.put(link, fields.debugLink).put(link + linkName, fields.crc, 4, big);
  section(1, 1, 7, note, noteSize);
  section(2, 7, 3, names, nameBytes.size());
  if (fields.debugLink.empty())
    section(3, 0, 0, 0, 0);
  else
    section(3, 17, 1, link, linkName + 4);
  if (!fields.debugSection.empty())
    section(4, 33, fields.debugType, 0x5F0, fields.debugSize);
  return file;
}

}  // namespace symsrv_1_0::internal
