#include "line_table.h"

#include <cstdint>
#include <utility>

namespace quiver_tool {
namespace {

constexpr std::uint64_t kMd5Field = 5;  // DW_LNCT_MD5
constexpr std::size_t kMd5Bytes = 16;
constexpr std::uint64_t kMostFiles = 1 << 20;

// DW_FORM_*
enum Form : std::uint64_t {
  kData2 = 0x05,
  kData4 = 0x06,
  kData8 = 0x07,
  kString = 0x08,
  kBlock = 0x09,
  kData1 = 0x0b,
  kStrp = 0x0e,
  kUdata = 0x0f,
  kData16 = 0x1e,
  kLineStrp = 0x1f,
};

/// Reads forwards; once something is missing, everything is.
class Reader final {
 public:
  Reader(std::string_view bytes, std::size_t offset)
      : m_rest(offset < bytes.size() ? bytes.substr(offset) : std::string_view()) {}

  bool isGood() const { return m_isGood; }

  std::string_view take(std::uint64_t size) {
    if (size > m_rest.size()) {
      m_isGood = false;
      m_rest = {};
      return {};
    }
    const std::string_view bytes = m_rest.substr(0, static_cast<std::size_t>(size));
    m_rest.remove_prefix(bytes.size());
    return bytes;
  }
  std::uint64_t number(std::size_t size) {
    std::uint64_t value = 0;
    const std::string_view bytes = take(size);
    for (std::size_t i = bytes.size(); i-- > 0;)
      value = value << 8 | static_cast<unsigned char>(bytes[i]);
    return value;
  }
  std::uint64_t variable() {
    constexpr unsigned kMostShift = 63;
    std::uint64_t value = 0;
    for (unsigned shift = 0; shift <= kMostShift; shift += 7) {
      const std::uint64_t byte = number(1);
      value |= (byte & 0x7F) << shift;
      if (!(byte & 0x80))
        return value;
    }
    m_isGood = false;
    return 0;
  }
  void skipText() {
    const std::size_t end = m_rest.find('\0');
    take(end == std::string_view::npos ? m_rest.size() + 1 : end + 1);
  }

 private:
  std::string_view m_rest;
  bool m_isGood = true;
};

using Fields = std::vector<std::pair<std::uint64_t, std::uint64_t>>;  // what it is, in which form

Fields fieldsOf(Reader& reader) {
  Fields fields;
  for (std::uint64_t count = reader.number(1); count > 0; --count) {
    const std::uint64_t what = reader.variable();
    fields.emplace_back(what, reader.variable());
  }
  return fields;
}

/// Returns the bytes of a field of a fixed size. Forms that are not known end the reading.
std::string_view takeField(Reader& reader, std::uint64_t form, std::size_t offsetSize) {
  switch (form) {
    case kData1:
      return reader.take(1);
    case kData2:
      return reader.take(2);
    case kData4:
      return reader.take(4);
    case kData8:
      return reader.take(8);
    case kData16:
      return reader.take(kMd5Bytes);
    case kStrp:
    case kLineStrp:
      return reader.take(offsetSize);
    case kBlock:
      return reader.take(reader.variable());
    case kUdata:
      reader.variable();
      return {};
    case kString:
      reader.skipText();
      return {};
    default:
      return reader.take(UINT64_MAX);
  }
}

std::string hexOf(std::string_view bytes) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    text += kDigits[byte >> 4];
    text += kDigits[byte & 15];
  }
  return text;
}

/// Reads a list of entries; returns their checksums, empty texts for entries without one.
std::vector<std::string> readEntries(Reader& reader, std::size_t offsetSize) {
  const Fields fields = fieldsOf(reader);
  const std::uint64_t count = reader.variable();
  std::vector<std::string> md5s;
  if (count > kMostFiles || (fields.empty() && count > 0))
    return md5s;
  for (std::uint64_t i = 0; i < count && reader.isGood(); ++i) {
    md5s.emplace_back();
    for (const auto& [what, form] : fields) {
      const std::string_view bytes = takeField(reader, form, offsetSize);
      if (what == kMd5Field && form == kData16)
        md5s.back() = hexOf(bytes);
    }
  }
  return md5s;
}

}  // namespace

std::vector<std::string> md5sOfLineTable(std::string_view section, std::size_t offset) {
  constexpr std::uint64_t kIs64Bit = 0xFFFFFFFF;
  Reader reader(section, offset);
  std::size_t offsetSize = 4;
  if (reader.number(4) == kIs64Bit) {
    offsetSize = 8;
    reader.number(8);
  }
  if (reader.number(2) != 5)
    return {};
  reader.take(2);           // Sizes of addresses and segments.
  reader.take(offsetSize);  // Length of the header.
  reader.take(5);           // How opcodes are to be read.
  const std::uint64_t opcodes = reader.number(1);
  reader.take(opcodes == 0 ? 0 : opcodes - 1);
  readEntries(reader, offsetSize);
  std::vector<std::string> md5s = readEntries(reader, offsetSize);
  return reader.isGood() ? md5s : std::vector<std::string>();
}

}  // namespace quiver_tool
