// Identities of ELF files: of every class and byte order, and hostile ones.

#include "symsrv/elf_identity.h"

#include <gtest/gtest.h>

#include "symsrv/file_builder_test_support.h"

namespace symsrv_1_0::internal {
namespace {

const char* const kId = "\x06\x27\x5A\xF7\x01\x02\x03\x04";

std::optional<ElfIdentity> read(std::string_view bytes) {
  MemorySource source(bytes);
  return readElfIdentity(source);
}

struct Kind {
  const char* name;
  bool is64Bit;
  bool isBigEndian;
};

class ElfOf : public ::testing::TestWithParam<Kind> {
 protected:
  static ElfFields fields() {
    return {.is64Bit = GetParam().is64Bit, .isBigEndian = GetParam().isBigEndian};
  }
};

TEST_P(ElfOf, HasABuildIdAmongItsSegments) {
  Bytes file = makeElf(fields());
  const std::size_t sectionTable = GetParam().is64Bit ? 40 : 32;
  file.put(sectionTable, 0, GetParam().is64Bit ? 8 : 4);
  ASSERT_TRUE(read(file));
  EXPECT_EQ(read(file)->buildId, kId);
  EXPECT_FALSE(read(file)->isComplete);
}

TEST_P(ElfOf, HasABuildIdAmongItsSections) {
  ElfFields sectionsOnly = fields();
  sectionsOnly.hasSegment = false;
  const std::optional<ElfIdentity> identity = read(makeElf(sectionsOnly));
  ASSERT_TRUE(identity);
  EXPECT_EQ(identity->buildId, kId);
  EXPECT_EQ(identity->is64Bit, GetParam().is64Bit);
  EXPECT_TRUE(identity->isComplete);
}

TEST_P(ElfOf, NamesItsDebugFile) {
  ElfFields linked = fields();
  linked.debugLink = "hello.debug";
  const std::optional<ElfIdentity> identity = read(makeElf(linked));
  ASSERT_TRUE(identity && identity->debugLink);
  EXPECT_EQ(identity->debugLink->name, "hello.debug");
  EXPECT_EQ(identity->debugLink->crc, 0x8A975EF3u);
}

TEST_P(ElfOf, MayHaveNeither) {
  ElfFields bare = fields();
  bare.buildId.clear();
  const std::optional<ElfIdentity> identity = read(makeElf(bare));
  ASSERT_TRUE(identity);
  EXPECT_EQ(identity->buildId, "");
  EXPECT_FALSE(identity->debugLink);
}

TEST_P(ElfOf, EveryShortenedFileIsReadWithoutHarm) {
  ElfFields linked = fields();
  linked.debugLink = "hello.debug";
  const Bytes file = makeElf(linked);
  const std::size_t end = 0x400 + 4 * (GetParam().is64Bit ? 64u : 40u);
  for (std::size_t size = 0; size < end; ++size) {
    const std::optional<ElfIdentity> identity = read(file.data().substr(0, size));
    EXPECT_FALSE(identity && identity->isComplete) << size;
  }
}

TEST_P(ElfOf, EveryByteMayBeAnything) {
  ElfFields linked = fields();
  linked.debugLink = "hello.debug";
  const Bytes file = makeElf(linked);
  for (std::size_t at = 6; at < file.size(); ++at) {
    Bytes damaged = file;
    damaged.put(at, 0xFF, 1);
    EXPECT_TRUE(read(damaged)) << at;
    Bytes worse = file;
    worse.put(at, 0xFFFFFFFFFFFFFFFF, 8);
    EXPECT_TRUE(read(worse)) << at;
  }
}

const Kind kKinds[] = {{"Little64", true, false},
                       {"Big64", true, true},
                       {"Little32", false, false},
                       {"Big32", false, true}};
INSTANTIATE_TEST_SUITE_P(Kinds, ElfOf, ::testing::ValuesIn(kKinds), [](const auto& row) {
  return std::string(row.param.name);
});

TEST(ElfIdentity, BuildIdsHaveTwoToSixtyFourBytes) {
  EXPECT_EQ(read(makeElf({.buildId = "ab"}))->buildId, "ab");
  EXPECT_EQ(read(makeElf({.buildId = std::string(64, 'x')}))->buildId, std::string(64, 'x'));
  EXPECT_EQ(read(makeElf({.buildId = "a"}))->buildId, "");
  EXPECT_EQ(read(makeElf({.buildId = std::string(65, 'x')}))->buildId, "");
}

TEST(ElfIdentity, OtherFilesAreNone) {
  for (const std::string_view bytes : {"",
                                       "\x7F"
                                       "EL",
                                       "\x7F"
                                       "ELF",
                                       "MZ"})
    EXPECT_FALSE(read(bytes));
  EXPECT_FALSE(read(std::string("\x7F"
                                "ELF\x03\x01",
                                6) +
                    std::string(100, '\0')));
  EXPECT_FALSE(read(std::string("\x7F"
                                "ELF\x02\x03",
                                6) +
                    std::string(100, '\0')));
}

}  // namespace
}  // namespace symsrv_1_0::internal
