// Looks at the header before anything is expanded, and counts while it is.

#include "symsrv/cabinet.h"

namespace symsrv_1_0::internal {
namespace {

constexpr std::uint16_t kSpansCabinets = 3;  // flags: another one before, another one behind

/// Passes on no more than was announced.
class CountingSink final : public IByteSink {
 public:
  CountingSink(IByteSink& to, std::uint64_t limit) : m_to(to), m_limit(limit) {}

  bool write(const void* bytes, std::size_t count) override {
    m_isTooMuch = m_isTooMuch || count > m_limit - m_count;
    if (m_isTooMuch || !m_to.write(bytes, count))
      return false;
    m_count += count;
    return true;
  }

  std::uint64_t count() const { return m_count; }
  bool isTooMuch() const { return m_isTooMuch; }

 private:
  IByteSink& m_to;
  std::uint64_t m_limit;
  std::uint64_t m_count = 0;
  bool m_isTooMuch = false;
};

}  // namespace

std::string expandCabinet(IByteSource& cabinet, std::uint64_t limit, IByteSink& to) {
  FieldReader header(cabinet);
  const std::uint32_t size = header.u32(8);
  const std::uint32_t files = header.u32(16);
  const std::uint16_t fileCount = header.u16(28);
  const std::uint16_t flags = header.u16(30);
  const std::uint32_t expandedSize = header.u32(files);
  if (header.u32(0) != 0x4643534D || !header.ok() || size > cabinet.size())
    return "damaged or cut off";
  if ((flags & kSpansCabinets) != 0 || fileCount != 1)
    return "not a cabinet of one file";
  if (expandedSize > limit)
    return "larger than the limit";
  CountingSink counted(to, expandedSize);
  std::string reason = expandCheckedCabinet(cabinet, counted);
  if (counted.isTooMuch())
    return "larger than it says";
  if (reason.empty() && counted.count() != expandedSize)
    return "smaller than it says";
  return reason;
}

}  // namespace symsrv_1_0::internal
