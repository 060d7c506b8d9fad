// Reading numbers of either byte order.

#include "symsrv/byte_source.h"

#include <cstring>

namespace symsrv_1_0::internal {

bool MemorySource::read(std::uint64_t offset, void* to, std::size_t count) {
  if (offset > m_bytes.size() || count > m_bytes.size() - offset)
    return false;
  if (count > 0)
    std::memcpy(to, m_bytes.data() + offset, count);
  return true;
}

bool FieldReader::bytes(std::uint64_t at, void* to, std::size_t count) {
  m_ok = m_ok && m_source.read(at, to, count);
  return m_ok;
}

std::uint64_t FieldReader::number(std::uint64_t at, unsigned width) {
  unsigned char raw[8] = {};
  if (!bytes(at, raw, width))
    return 0;
  std::uint64_t value = 0;
  for (unsigned i = 0; i < width; ++i) {
    const unsigned next = m_order == ByteOrder::kBig ? i : width - 1 - i;
    value = value << 8 | raw[next];
  }
  return value;
}

}  // namespace symsrv_1_0::internal
