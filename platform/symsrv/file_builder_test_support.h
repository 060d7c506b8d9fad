// Small binaries and symbol files, made by hand: every field can be made wrong.

#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "symsrv/guid.h"

namespace symsrv_1_0::internal {

/// A file in the making: numbers are put at places, and the file grows to hold them.
class Bytes final {
 public:
  explicit Bytes(std::size_t size = 0) : m_data(size, '\0') {}

  Bytes& put(std::size_t at, std::uint64_t value, unsigned width, bool isBigEndian = false);
  Bytes& put16(std::size_t at, std::uint64_t value) { return put(at, value, 2); }
  Bytes& put32(std::size_t at, std::uint64_t value) { return put(at, value, 4); }
  Bytes& put64(std::size_t at, std::uint64_t value) { return put(at, value, 8); }
  Bytes& put(std::size_t at, std::string_view bytes);

  std::size_t size() const { return m_data.size(); }
  const std::string& data() const { return m_data; }
  operator std::string_view() const { return m_data; }  // NOLINT

 private:
  std::string m_data;
};

inline constexpr Guid kSampleGuid = {
    0x7C, 0xE7, 0x46, 0x13, 0xBB, 0xD2, 0xC8, 0x45, 0x4C, 0x4C, 0x44, 0x20, 0x50, 0x44, 0x42, 0x2E};

std::string rsdsRecord(std::string_view name,
                       std::uint32_t age = 1,
                       const Guid& guid = kSampleGuid);
std::string nb10Record(std::string_view name, std::uint32_t signature, std::uint32_t age);

/// Where the parts of `makePe` lie.
struct PeLayout {
  static constexpr std::size_t kPe = 0x80;
  static constexpr std::size_t kOptional = kPe + 24;
  static constexpr std::size_t kDebugDirectory = 0x400;
  static constexpr std::size_t kRecords = 0x600;
};

/// Makes a PE file of one section, with one CodeView entry per record.
Bytes makePe(bool is64Bit, const std::vector<std::string>& records);

struct PdbFields {
  std::uint32_t blockSize = 512;
  std::uint32_t version = 20000404;
  std::uint32_t signature = 0x5F000001;
  std::uint32_t age = 1;
  Guid guid = kSampleGuid;
  bool hasDbi = true;
  std::uint32_t dbiAge = 1;
  std::uint32_t emptyStreams = 0;  ///< Behind the four that have content.
};

/// Makes a symbol file; its first stream is longer than one block.
Bytes makePdb(const PdbFields& fields = {});

struct ElfFields {
  bool is64Bit = true;
  bool isBigEndian = false;
  std::string buildId = "\x06\x27\x5A\xF7\x01\x02\x03\x04";
  bool hasSegment = true;      ///< The note can be reached through a program header.
  std::string debugLink = {};  ///< Empty: no such section.
  std::uint32_t crc = 0x8A975EF3;
  std::string debugSection = {};  ///< Empty: no such section.
  std::uint32_t debugType = 1;
  std::size_t debugSize = 16;
};

Bytes makeElf(const ElfFields& fields = {});

}  // namespace symsrv_1_0::internal
