// Which files are accepted for which binary.

#include "symsrv/verify.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "symsrv/file_builder_test_support.h"

namespace symsrv_1_0::internal {
namespace {

using ::testing::HasSubstr;

std::string check(std::string_view file, std::string_view binary) {
  MemorySource binarySource(binary), fileSource(file);
  const SoughtResult sought = soughtFileOf(binarySource, "x.dll");
  return sought.file ? mismatch(fileSource, *sought.file) : sought.reason;
}

std::string checkPdb(const PdbFields& fields, std::uint32_t age = 1) {
  return check(makePdb(fields), makePe(true, {rsdsRecord("a.pdb", age)}));
}

struct AgeRow {
  const char* name;
  std::uint32_t binary, info, dbi;
  bool hasDbi, isRight;
};

class PdbAges : public ::testing::TestWithParam<AgeRow> {};

TEST_P(PdbAges, DecideTogether) {
  const AgeRow& row = GetParam();
  const std::string text =
      checkPdb({.age = row.info, .hasDbi = row.hasDbi, .dbiAge = row.dbi}, row.binary);
  if (row.isRight)
    EXPECT_EQ(text, "");
  else
    EXPECT_THAT(text, HasSubstr("age differs"));
}

const AgeRow kAges[] = {
    {"Equal", 1, 1, 1, true, true},
    {"RewrittenAfterTheLink", 1, 3, 1, true, true},
    {"LinkedOnceMore", 1, 3, 3, true, false},
    {"OlderThanTheBinary", 3, 1, 3, true, false},
    {"SecondAgeNull", 1, 3, 0, true, true},
    {"NoSecondAge", 1, 3, 0, false, true},
    {"NoSecondAgeAndOlder", 4, 3, 0, false, false},
};
INSTANTIATE_TEST_SUITE_P(Table, PdbAges, ::testing::ValuesIn(kAges), [](const auto& row) {
  return std::string(row.param.name);
});

TEST(Verify, GuidMustBeEqual) {
  Guid other = kSampleGuid;
  other[15] = 0;
  EXPECT_THAT(checkPdb({.guid = other}), HasSubstr("GUID differs"));
  EXPECT_THAT(checkPdb({.version = 19990604}), HasSubstr("GUID differs"));
}

TEST(Verify, OldBinariesGoBySignature) {
  const Bytes binary = makePe(true, {nb10Record("a.pdb", 0x5F000001, 1)});
  EXPECT_EQ(check(makePdb(), binary), "");
  EXPECT_THAT(check(makePdb({.signature = 2}), binary), HasSubstr("signature differs"));
}

TEST(Verify, TellsWhatIsThereInstead) {
  const Bytes binary = makePe(true, {rsdsRecord("a.pdb")});
  EXPECT_EQ(check("", binary), "empty");
  EXPECT_THAT(check("<html>", binary), HasSubstr("page of text"));
  EXPECT_THAT(check("\x1F\x8B", binary), HasSubstr("gzip"));
  EXPECT_THAT(check(std::string("Microsoft MSFZ Container\r\n\x1A"
                                "ALD\0\0",
                                32),
                    binary),
              HasSubstr("not supported"));
  EXPECT_THAT(check(makePdb().data().substr(0, 5000), binary), HasSubstr("cut off"));
}

TEST(Verify, PortableFilesFitPortableRecordsOnly) {
  Bytes pdb(256);
  pdb.put(0, "BSJB").put32(12, 12).put16(30, 1).put32(32, 160).put32(36, 32).put(40, "#Pdb");
  pdb.put(160, std::string_view(reinterpret_cast<const char*>(kSampleGuid.data()), 16))
      .put32(176, 7);
  Bytes binary = makePe(true, {rsdsRecord("a.pdb")});
  EXPECT_NE(check(pdb, binary), "");
  binary.put16(PeLayout::kDebugDirectory + 10, 0x504D).put32(PeLayout::kDebugDirectory + 4, 7);
  EXPECT_EQ(check(pdb, binary), "");
  EXPECT_NE(check(pdb.put32(176, 8), binary), "");
}

TEST(Verify, ElfFilesGoByBuildId) {
  const ElfFields other{.is64Bit = false, .hasSegment = false, .debugSection = ".debug_info"};
  EXPECT_EQ(check(makeElf(other), makeElf()), "");
  EXPECT_THAT(check(makeElf({.buildId = "other"}), makeElf()), HasSubstr("build id differs"));
  EXPECT_THAT(check(makeElf().data().substr(0, 0x4C0), makeElf()), HasSubstr("cut off"));
  EXPECT_THAT(check("<html>", makeElf()), HasSubstr("page of text"));
}

struct SectionRow {
  const char* name;
  const char* section;
  std::uint32_t type;
  std::size_t size;
  bool isEnough;
};

class DebugSection : public ::testing::TestWithParam<SectionRow> {};

TEST_P(DebugSection, MakesAFileADebugFile) {
  const SectionRow& row = GetParam();
  const Bytes file =
      makeElf({.debugSection = row.section, .debugType = row.type, .debugSize = row.size});
  EXPECT_EQ(check(file, makeElf()), row.isEnough ? "" : "has no debug information");
}

constexpr std::uint32_t kContent = 1, kSymbols = 2, kNoBits = 8, kDynamicSymbols = 11;
const SectionRow kSections[] = {
    {"Information", ".debug_info", kContent, 16, true},
    {"CompressedInformation", ".zdebug_info", kContent, 16, true},
    {"Symbols", ".symtab", kSymbols, 16, true},
    {"EmptyInformation", ".debug_info", kContent, 0, false},
    {"InformationThatIsElsewhere", ".debug_info", kNoBits, 16, false},
    {"NoSymbols", ".symtab", kSymbols, 0, false},
    {"SymbolsThatAreElsewhere", ".symtab", kNoBits, 16, false},
    {"SymbolsForTheLoader", ".dynsym", kDynamicSymbols, 16, false},
    {"OtherContent", ".text", kContent, 16, false},
    {"None", "", kContent, 0, false},
};
INSTANTIATE_TEST_SUITE_P(Table, DebugSection, ::testing::ValuesIn(kSections), [](const auto& row) {
  return std::string(row.param.name);
});

TEST(Verify, WithoutABuildIdTheChecksumDecides) {
  // What zlib makes of these bytes.
  const Bytes debugFile = makeElf({.buildId = ""});
  const auto binary = [](std::uint32_t crc) {
    return makeElf({.buildId = "", .debugLink = "a.debug", .crc = crc});
  };
  EXPECT_THAT(check(debugFile, binary(1)), HasSubstr("checksum differs"));
  EXPECT_EQ(check(debugFile, binary(0x984A3C56)), "");
}

}  // namespace
}  // namespace symsrv_1_0::internal
