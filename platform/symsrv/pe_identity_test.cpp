// Identities of PE files: well made, oddly made and hostile ones.

#include "symsrv/pe_identity.h"

#include <gtest/gtest.h>

#include "symsrv/file_builder_test_support.h"

namespace symsrv_1_0::internal {
namespace {

std::optional<PeIdentity> read(std::string_view bytes) {
  MemorySource source(bytes);
  return readPeIdentity(source);
}

std::optional<CodeView> record(std::string_view bytes) {
  const std::optional<PeIdentity> identity = read(bytes);
  return identity ? identity->codeView : std::nullopt;
}

class PeIdentityOf : public ::testing::TestWithParam<bool> {};

TEST_P(PeIdentityOf, HasStampSizeAndSymbolFile) {
  const Bytes file = makePe(GetParam(), {rsdsRecord(R"(c:\build\tiny64.pdb)", 10)});
  const std::optional<PeIdentity> identity = read(file);
  ASSERT_TRUE(identity);
  EXPECT_EQ(identity->is64Bit, GetParam());
  EXPECT_EQ(identity->timeStamp, 0x542D574Eu);
  EXPECT_EQ(identity->sizeOfImage, 0xC2000u);
  ASSERT_TRUE(identity->codeView);
  EXPECT_TRUE(identity->codeView->hasGuid);
  EXPECT_EQ(guidText(identity->codeView->guid), "1346E77C-D2BB-45C8-4C4C-44205044422E");
  EXPECT_EQ(identity->codeView->age, 10u);
  EXPECT_EQ(identity->codeView->name, R"(c:\build\tiny64.pdb)");
  EXPECT_FALSE(identity->codeView->isPortable);
}

TEST_P(PeIdentityOf, KnowsTheOldRecord) {
  const std::optional<CodeView> old = record(makePe(GetParam(), {nb10Record("a\xE9.pdb", 7, 3)}));
  ASSERT_TRUE(old);
  EXPECT_FALSE(old->hasGuid);
  EXPECT_EQ(old->signature, 7u);
  EXPECT_EQ(old->age, 3u);
  EXPECT_EQ(old->name, "a\xC3\xA9.pdb");
}

INSTANTIATE_TEST_SUITE_P(Bits, PeIdentityOf, ::testing::Bool(), [](const auto& row) {
  return row.param ? std::string("Of64") : std::string("Of32");
});

TEST(PeIdentity, TakesTheFirstRecordThatCanBeRead) {
  const std::string good = rsdsRecord("good.pdb");
  EXPECT_EQ(record(makePe(true, {"NB09....", "RSDS", good, rsdsRecord("late.pdb")}))->name,
            "good.pdb");
}

TEST(PeIdentity, KnowsPortableSymbolFiles) {
  Bytes file = makePe(true, {rsdsRecord("managed.pdb")});
  file.put16(PeLayout::kDebugDirectory + 10, 0x504D).put32(PeLayout::kDebugDirectory + 4, 0xABCD);
  ASSERT_TRUE(record(file));
  EXPECT_TRUE(record(file)->isPortable);
  EXPECT_EQ(record(file)->portableStamp, 0xABCDu);
}

TEST(PeIdentity, AcceptsARecordWithoutAName) {
  ASSERT_TRUE(record(makePe(true, {rsdsRecord("")})));
  EXPECT_EQ(record(makePe(true, {rsdsRecord("")}))->name, "");
}

TEST(PeIdentity, FindsADirectoryThatLiesInTheHeaders) {
  Bytes file = makePe(true, {rsdsRecord("a.pdb")});
  const std::string directory = file.data().substr(PeLayout::kDebugDirectory, 28);
  file.put(0x300, directory).put32(PeLayout::kOptional + 160, 0x300);
  ASSERT_TRUE(record(file));
  EXPECT_EQ(record(file)->name, "a.pdb");
}

TEST(PeIdentity, NameMustEndInsideTheRecord) {
  std::string open = rsdsRecord("abc.pdb");
  open.back() = 'x';
  EXPECT_FALSE(record(makePe(true, {open})));
  Bytes atTheEnd = makePe(true, {rsdsRecord("abc.pdb")});
  atTheEnd.put32(PeLayout::kDebugDirectory + 16, 0xFFFFFFFF);
  EXPECT_EQ(record(atTheEnd)->name, "abc.pdb");
}

TEST(PeIdentity, OtherFilesAreNone) {
  for (const std::string_view bytes : {"",
                                       "M",
                                       "MZ",
                                       "\x7F"
                                       "ELF",
                                       "PE"})
    EXPECT_FALSE(read(bytes));
  EXPECT_FALSE(read(std::string(4096, '\0')));
}

struct Damage {
  const char* name;
  std::size_t at;
  std::uint64_t value;
  unsigned width;
  bool isStillPe;
};

class DamagedPe : public ::testing::TestWithParam<Damage> {};

TEST_P(DamagedPe, NamesNoSymbolFile) {
  Bytes file = makePe(true, {rsdsRecord("a.pdb")});
  ASSERT_TRUE(record(file));
  file.put(GetParam().at, GetParam().value, GetParam().width);
  EXPECT_EQ(read(file).has_value(), GetParam().isStillPe);
  EXPECT_FALSE(record(file));
}

constexpr std::size_t kOpt = PeLayout::kOptional;
constexpr std::size_t kDir = PeLayout::kDebugDirectory;
const Damage kDamages[] = {
    {"HeaderAtNull", 0x3C, 0, 4, false},
    {"HeaderBehindTheEnd", 0x3C, 0xFFFFFFF0, 4, false},
    {"NoPeMagic", PeLayout::kPe, 0, 4, false},
    {"UnknownMagic", kOpt, 0x107, 2, false},
    {"NoOptionalHeader", PeLayout::kPe + 20, 0, 2, false},
    {"OptionalHeaderTooShort", PeLayout::kPe + 20, 100, 2, true},
    {"HugeOptionalHeader", PeLayout::kPe + 20, 0xFFFF, 2, true},
    {"TooFewDirectories", kOpt + 108, 6, 4, true},
    {"DirectoryAtNull", kOpt + 160, 0, 4, true},
    {"DirectoryInNoSection", kOpt + 160, 0x7FFFFFFF, 4, true},
    {"DirectoryOfNothing", kOpt + 164, 27, 4, true},
    {"DirectoryPastTheSectionsBytes", kOpt + 240 + 16, 0, 4, true},
    {"NoSections", PeLayout::kPe + 6, 0, 2, true},
    {"SectionBehindTheEnd", kOpt + 240 + 20, 0xFFFFFF00, 4, true},
    {"OtherType", kDir + 12, 16, 4, true},
    {"RecordTooShort", kDir + 16, 24, 4, true},
    {"RecordBehindTheEnd", kDir + 24, 0xFFFFFFF0, 4, true},
    {"UnknownRecord", PeLayout::kRecords, 0x3131424E, 4, true},
};
INSTANTIATE_TEST_SUITE_P(Table, DamagedPe, ::testing::ValuesIn(kDamages), [](const auto& row) {
  return std::string(row.param.name);
});

TEST(PeIdentity, HugeCountsEndSoon) {
  Bytes file = makePe(true, {rsdsRecord("a.pdb")});
  file.put32(kOpt + 164, 0xFFFFF000).put32(kDir + 12, 16).put16(PeLayout::kPe + 6, 0xFFFF);
  EXPECT_TRUE(read(file));
  EXPECT_FALSE(record(file));
}

TEST(PeIdentity, EveryShortenedFileIsReadWithoutHarm) {
  const Bytes file = makePe(true, {rsdsRecord("a.pdb")});
  const std::size_t end = PeLayout::kRecords + rsdsRecord("a.pdb").size();
  for (std::size_t size = 0; size < end; ++size)
    EXPECT_FALSE(record(file.data().substr(0, size))) << size;
}

}  // namespace
}  // namespace symsrv_1_0::internal
