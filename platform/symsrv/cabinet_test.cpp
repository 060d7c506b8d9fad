// Cabinets of each kind of compression, and what must not come out of them.

#include "symsrv/cabinet.h"

#include <stdexcept>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "symsrv/file_builder_test_support.h"
#include "symsrv/files.h"

namespace symsrv_1_0::internal {
namespace {

using ::testing::HasSubstr;

class TextSink final : public IByteSink {
 public:
  bool write(const void* bytes, std::size_t count) override {
    if (m_throws)
      throw std::runtime_error("enough");
    m_text.append(static_cast<const char*>(bytes), count);
    return !m_isFull;
  }

  std::string m_text;
  bool m_throws = false;
  bool m_isFull = false;
};

constexpr std::size_t kFrame = 32768;  // what one data block of a cabinet expands to

/// Makes a cabinet whose data is in the LZX form, as one block that is not compressed in itself.
Bytes makeLzxCabinet(const std::string& content, std::uint32_t claim) {
  const std::size_t blocks = (content.size() + kFrame - 1) / kFrame;
  const std::size_t size = content.size();
  Bytes file;
  file.put(0, "MSCF").put32(16, 44).put16(24, 0x0103).put16(26, 1).put16(28, 1);
  file.put32(36, 68).put16(40, blocks).put16(42, 3 | 15 << 8);
  file.put32(44, claim).put32(48, 0).put16(52, 0).put(60, "x.pdb").put16(66, 0);
  std::size_t at = 68;
  for (std::size_t i = 0; i < blocks; ++i) {
    std::string data;
    if (i == 0) {
      // Bits: 0, then 011 for such a block, then 24 of its size; words are little-endian.
      const std::uint32_t bits = static_cast<std::uint32_t>(3u << 28 | size << 4);
      Bytes head;
      head.put16(0, bits >> 16).put16(2, bits & 0xFFFF).put32(4, 1).put32(8, 1).put32(12, 1);
      data = head.data();
    }
    const std::string part = content.substr(i * kFrame, kFrame);
    data += part;
    file.put32(at, 0).put16(at + 4, data.size()).put16(at + 6, part.size()).put(at + 8, data);
    at += 8 + data.size();
  }
  return file.put32(8, at);
}

std::string expand(std::string_view cabinet, TextSink& to, std::uint64_t limit = 1 << 20) {
  MemorySource source(cabinet);
  return expandCabinet(source, limit, to);
}

std::string sample(std::size_t size) {
  std::string text;
  for (std::size_t i = 0; i < size; ++i) text += static_cast<char>(i * i % 251);
  return text;
}

TEST(Cabinet, OfLzxKindIsExpanded) {
  for (const std::size_t size : {100u, 32768u, 70000u}) {
    TextSink sink;
    const std::string content = sample(size);
    EXPECT_EQ(expand(makeLzxCabinet(content, static_cast<std::uint32_t>(size)), sink), "");
    EXPECT_TRUE(sink.m_text == content) << size;
  }
}

TEST(Cabinet, StopsAtTheLimitBeforeAnythingIsWritten) {
  TextSink sink;
  EXPECT_THAT(expand(makeLzxCabinet(sample(5000), 5000), sink, 4999), HasSubstr("limit"));
  EXPECT_EQ(sink.m_text, "");
}

TEST(Cabinet, NeverGivesMoreThanItSays) {
  TextSink sink;
  static_cast<void>(expand(makeLzxCabinet(sample(5000), 100), sink));
  EXPECT_LE(sink.m_text.size(), 100u);
}

TEST(Cabinet, OfLessThanItSaysIsRefused) {
  TextSink sink;
  EXPECT_NE(expand(makeLzxCabinet(sample(5000), 6000), sink), "");
}

TEST(Cabinet, SinksMayEndItAndMayThrow) {
  TextSink sink;
  sink.m_isFull = true;
  EXPECT_THAT(expand(makeLzxCabinet(sample(5000), 5000), sink), HasSubstr("cannot be written"));
  sink.m_throws = true;
  EXPECT_THROW(expand(makeLzxCabinet(sample(5000), 5000), sink), std::runtime_error);
}

TEST(Cabinet, HeadersAreCheckedFirst) {
  const Bytes good = makeLzxCabinet(sample(100), 100);
  const auto reason = [&](std::size_t at, std::uint64_t value, unsigned width) {
    Bytes bad = good;
    TextSink sink;
    return expand(bad.put(at, value, width), sink);
  };
  EXPECT_THAT(reason(0, 0, 4), HasSubstr("damaged"));
  EXPECT_THAT(reason(8, 0xFFFFFFFF, 4), HasSubstr("cut off"));
  EXPECT_THAT(reason(16, 0xFFFFFFFF, 4), HasSubstr("cut off"));
  EXPECT_THAT(reason(28, 2, 2), HasSubstr("one file"));
  EXPECT_THAT(reason(30, 1, 2), HasSubstr("one file"));
  EXPECT_THAT(reason(30, 2, 2), HasSubstr("one file"));
  EXPECT_NE(reason(26, 0, 2), "");
  EXPECT_NE(reason(42, 7, 2), "");
}

TEST(Cabinet, EveryByteMayBeAnything) {
  const Bytes good = makeLzxCabinet(sample(300), 300);
  for (std::size_t at = 0; at < good.size(); ++at) {
    Bytes bad = good;
    TextSink sink;
    static_cast<void>(expand(bad.put(at, 0xFF, 1), sink));
    EXPECT_LE(sink.m_text.size(), std::size_t{1} << 20);
  }
}

}  // namespace
}  // namespace symsrv_1_0::internal
