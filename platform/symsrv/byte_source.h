// Bytes that are read here and there: a file, or memory in tests.
//
// The readers of binaries and symbol files see nothing else. They never take a whole file into
// memory, and what a header says of sizes and places is believed only as far as the bytes reach.

#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace symsrv_1_0::internal {

class IByteSource {
 public:
  virtual std::uint64_t size() const = 0;
  /// Returns true when all `count` bytes were read.
  virtual bool read(std::uint64_t offset, void* to, std::size_t count) = 0;

 protected:
  ~IByteSource() = default;
};

/// Takes bytes, one behind the other.
class IByteSink {
 public:
  /// Returns false to end it all.
  virtual bool write(const void* bytes, std::size_t count) = 0;

 protected:
  ~IByteSink() = default;
};

/// Memory that the caller keeps alive.
class MemorySource final : public IByteSource {
 public:
  explicit MemorySource(std::string_view bytes) : m_bytes(bytes) {}

  std::uint64_t size() const override { return m_bytes.size(); }
  bool read(std::uint64_t offset, void* to, std::size_t count) override;

 private:
  std::string_view m_bytes;
};

enum class ByteOrder { kLittle, kBig };

/// Reads numbers. After a read that failed every number is 0 and `ok` stays false, so that a row of
/// fields needs one test at its end.
class FieldReader final {
 public:
  explicit FieldReader(IByteSource& source, ByteOrder order = ByteOrder::kLittle)
      : m_source(source), m_order(order) {}

  bool ok() const { return m_ok; }
  std::uint64_t size() const { return m_source.size(); }

  bool bytes(std::uint64_t at, void* to, std::size_t count);
  std::uint8_t u8(std::uint64_t at) { return static_cast<std::uint8_t>(number(at, 1)); }
  std::uint16_t u16(std::uint64_t at) { return static_cast<std::uint16_t>(number(at, 2)); }
  std::uint32_t u32(std::uint64_t at) { return static_cast<std::uint32_t>(number(at, 4)); }
  std::uint64_t u64(std::uint64_t at) { return number(at, 8); }

 private:
  std::uint64_t number(std::uint64_t at, unsigned width);

  IByteSource& m_source;
  ByteOrder m_order;
  bool m_ok = true;
};

}  // namespace symsrv_1_0::internal
