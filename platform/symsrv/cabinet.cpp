// Looks at the header before anything is expanded, and counts while it is.

#include "symsrv/cabinet.h"

namespace symsrv_1_0::internal {
namespace {

constexpr const char* kDamaged = "damaged or cut off";
constexpr std::uint16_t kHasReserve = 4;
constexpr std::uint32_t kFrame = 32768;       // a block expands to at most this
constexpr std::uint32_t kFrameMargin = 6144;  // and takes at most this more
constexpr std::uint16_t kLastMethod = 3;      // none, MSZIP, Quantum, LZX
constexpr std::uint16_t kSpansCabinets = 3;   // flags: another one before, another one behind

/// Where the parts of a cabinet of one folder and one file lie.
struct Layout {
  std::uint64_t folder = 0;
  std::uint64_t file = 0;
  std::uint64_t dataReserve = 0;  // bytes of somebody's own in each block's header
};

/// Returns a reason, or an empty text and the layout.
std::string readLayout(FieldReader& cabinet, Layout& layout) {
  const std::uint32_t size = cabinet.u32(8);
  layout.file = cabinet.u32(16);
  const std::uint16_t folders = cabinet.u16(26);
  const std::uint16_t files = cabinet.u16(28);
  const std::uint16_t flags = cabinet.u16(30);
  if (cabinet.u32(0) != 0x4643534D || !cabinet.ok() || size > cabinet.size())
    return kDamaged;
  if ((flags & kSpansCabinets) != 0 || folders != 1 || files != 1 ||
      cabinet.u16(layout.file + 8) != 0)
    return "not a cabinet of one file";
  layout.folder = 36;
  if ((flags & kHasReserve) != 0) {
    layout.folder = 40 + std::uint64_t{cabinet.u16(36)};
    layout.dataReserve = cabinet.u8(39);
  }
  return cabinet.ok() ? "" : kDamaged;
}

/// Returns true when the blocks lie in the file and are of possible sizes. Not every library that
/// expands them looks.
bool hasSoundBlocks(FieldReader& cabinet, const Layout& layout) {
  std::uint64_t at = cabinet.u32(layout.folder);
  const std::uint32_t count = cabinet.u16(layout.folder + 4);
  if ((cabinet.u16(layout.folder + 6) & 15) > kLastMethod)
    return false;
  for (std::uint32_t i = 0; i < count; ++i) {
    const std::uint32_t packed = cabinet.u16(at + 4);
    if (packed > kFrame + kFrameMargin || cabinet.u16(at + 6) > kFrame)
      return false;
    at += 8 + layout.dataReserve + packed;
    if (!cabinet.ok() || at > cabinet.size())
      return false;
  }
  return cabinet.ok() && count > 0;
}

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
  Layout layout;
  if (std::string reason = readLayout(header, layout); !reason.empty())
    return reason;
  const std::uint32_t expandedSize = header.u32(layout.file);
  if (expandedSize > limit)
    return "larger than the limit";
  if (!hasSoundBlocks(header, layout))
    return kDamaged;
  CountingSink counted(to, expandedSize);
  std::string reason = expandCheckedCabinet(cabinet, counted);
  if (counted.isTooMuch())
    return "larger than it says";
  if (reason.empty() && counted.count() != expandedSize)
    return "smaller than it says";
  return reason;
}

}  // namespace symsrv_1_0::internal
