// Identities of symbol files.

#include "symsrv/pdb_identity.h"

#include <gtest/gtest.h>

#include "symsrv/file_builder_test_support.h"

namespace symsrv_1_0::internal {
namespace {

std::optional<PdbIdentity> read(std::string_view bytes) {
  MemorySource source(bytes);
  return readPdbIdentity(source);
}

Container containerOf(std::string_view bytes) {
  MemorySource source(bytes);
  return recogniseContainer(source);
}

class PdbOfBlockSize : public ::testing::TestWithParam<std::uint32_t> {};

TEST_P(PdbOfBlockSize, HasGuidAndAges) {
  const std::optional<PdbIdentity> identity =
      read(makePdb({.blockSize = GetParam(), .age = 3, .dbiAge = 2}));
  ASSERT_TRUE(identity);
  EXPECT_TRUE(identity->hasGuid);
  EXPECT_EQ(identity->guid, kSampleGuid);
  EXPECT_EQ(identity->age, 3u);
  EXPECT_EQ(identity->dbiAge, 2u);
  EXPECT_EQ(identity->signature, 0x5F000001u);
}

INSTANTIATE_TEST_SUITE_P(Sizes, PdbOfBlockSize, ::testing::Values(512, 1024, 4096, 8192, 65536));

TEST(PdbIdentity, NeedsNoSecondAge) {
  const std::optional<PdbIdentity> identity = read(makePdb({.hasDbi = false}));
  ASSERT_TRUE(identity);
  EXPECT_FALSE(identity->dbiAge);
  Bytes old = makePdb();
  old.put32(9 * 512, 0);  // a header without an age
  ASSERT_TRUE(read(old));
  EXPECT_FALSE(read(old)->dbiAge);
}

TEST(PdbIdentity, OldVersionsHaveASignatureOnly) {
  for (const std::uint32_t version : {19941610u, 19990604u}) {
    const std::optional<PdbIdentity> identity = read(makePdb({.version = version}));
    ASSERT_TRUE(identity);
    EXPECT_FALSE(identity->hasGuid);
    EXPECT_EQ(identity->signature, 0x5F000001u);
  }
}

TEST(PdbIdentity, FollowsADirectoryThatNeedsSeveralMapBlocks) {
  // 17000 streams: the directory takes 133 blocks of 512 bytes, their numbers two.
  constexpr std::size_t kBlock = 512, kStreams = 17000, kDirectory = (1 + kStreams + 5) * 4;
  constexpr std::size_t kDirectoryBlocks = (kDirectory + kBlock - 1) / kBlock;
  constexpr std::size_t kFirst = 10;  // of the directory's blocks, behind the streams' own
  constexpr std::size_t kMaps = kFirst + kDirectoryBlocks;
  Bytes file = makePdb();
  file.put32(40, kMaps + 2).put32(44, kDirectory).put32(52, kMaps + 1).put32(56, kMaps);
  const auto mapEntry = [](std::size_t i) {
    return (i < 128 ? kMaps + 1 : kMaps) * kBlock + i % 128 * 4;
  };
  const auto directory = [](std::size_t word) { return kFirst * kBlock + word * 4; };
  file.put32((kMaps + 2) * kBlock - 4, 0);
  for (std::size_t i = 0; i < kDirectoryBlocks; ++i) file.put32(mapEntry(i), kFirst + i);
  file.put32(directory(0), kStreams).put32(directory(1), 513).put32(directory(2), 28);
  file.put32(directory(3), 16).put32(directory(4), 64);
  for (std::size_t i = 0; i < 5; ++i) file.put32(directory(1 + kStreams + i), 5 + i);
  const std::optional<PdbIdentity> identity = read(file);
  ASSERT_TRUE(identity);
  EXPECT_EQ(identity->guid, kSampleGuid);
  EXPECT_EQ(identity->dbiAge, 1u);
}

struct Damage {
  const char* name;
  std::size_t at;
  std::uint64_t value;
};

class DamagedPdb : public ::testing::TestWithParam<Damage> {};

TEST_P(DamagedPdb, IsRefused) {
  Bytes file = makePdb();
  ASSERT_TRUE(read(file));
  EXPECT_FALSE(read(file.put32(GetParam().at, GetParam().value)));
}

constexpr std::size_t kDirectoryAt = 4 * 512;
const Damage kDamages[] = {
    {"OtherMagic", 28, 0x58},
    {"NoBlockSize", 32, 0},
    {"OddBlockSize", 32, 768},
    {"SmallBlockSize", 32, 256},
    {"HugeBlockSize", 32, 0x80000000},
    {"OddFreeMap", 36, 3},
    {"NoBlocks", 40, 0},
    {"FewBlocks", 40, 4},
    {"CutOff", 40, 11},
    {"HugeBlockCount", 40, 0xFFFFFFFF},
    {"NoDirectory", 44, 0},
    {"OddDirectory", 44, 7},
    {"HugeDirectory", 44, 0xFFFFFFFC},
    {"DirectoryWithoutStreams", 44, 4},
    {"MapInBlockNull", 52, 0},
    {"MapBehindTheEnd", 52, 10},
    {"DirectoryInBlockNull", 3 * 512, 0},
    {"DirectoryBehindTheEnd", 3 * 512, 0x7FFFFFFF},
    {"NoStreams", kDirectoryAt, 0},
    {"HugeStreamCount", kDirectoryAt, 0xFFFFFFFF},
    {"HugeFirstStream", kDirectoryAt + 4, 0xFFFFFFFE},
    {"ShortInfo", kDirectoryAt + 8, 11},
    {"InfoWithoutGuid", kDirectoryAt + 8, 27},
    {"NilInfo", kDirectoryAt + 8, 0xFFFFFFFF},
    {"InfoInBlockNull", kDirectoryAt + 28, 0},
    {"InfoBehindTheEnd", kDirectoryAt + 28, 10},
};
INSTANTIATE_TEST_SUITE_P(Table, DamagedPdb, ::testing::ValuesIn(kDamages), [](const auto& row) {
  return std::string(row.param.name);
});

TEST(PdbIdentity, EveryShortenedFileIsRefused) {
  const Bytes file = makePdb();
  for (std::size_t size = 0; size < file.size(); size += 7)
    EXPECT_FALSE(read(file.data().substr(0, size))) << size;
}

Bytes portablePdb() {
  Bytes file(256);
  file.put(0, "BSJB").put32(12, 12).put(16, "PDB v1.0").put16(30, 2);
  file.put32(32, 128).put32(36, 8).put(40, "#Strings");
  file.put32(52, 160).put32(56, 32).put(60, "#Pdb");
  file.put(160, std::string_view(reinterpret_cast<const char*>(kSampleGuid.data()), 16));
  return file.put32(176, 0xABCD);
}

TEST(PortablePdbIdentity, HasGuidAndStamp) {
  const Bytes file = portablePdb();
  MemorySource source(file);
  const std::optional<PdbIdentity> identity = readPortablePdbIdentity(source);
  ASSERT_TRUE(identity);
  EXPECT_EQ(identity->guid, kSampleGuid);
  EXPECT_EQ(identity->portableStamp, 0xABCDu);
}

TEST(PortablePdbIdentity, ShortenedFilesAreRefused) {
  const Bytes file = portablePdb();
  for (std::size_t size = 0; size < 192; ++size) {
    const std::string shortened = file.data().substr(0, size);
    MemorySource source(shortened);
    EXPECT_FALSE(readPortablePdbIdentity(source)) << size;
  }
}

TEST(Containers, AreToldByTheirFirstBytes) {
  EXPECT_EQ(containerOf(makePdb()), Container::kPdb);
  EXPECT_EQ(containerOf("BSJB...."), Container::kPortablePdb);
  EXPECT_EQ(containerOf("MSCF"), Container::kCabinet);
  EXPECT_EQ(containerOf("SZDD"), Container::kSzdd);
  EXPECT_EQ(containerOf("MZ"), Container::kPe);
  EXPECT_EQ(containerOf("\x7F"
                        "ELF"),
            Container::kElf);
  EXPECT_EQ(containerOf("\x1F\x8B"), Container::kGzip);
  EXPECT_EQ(containerOf("<html>"), Container::kMarkup);
  EXPECT_EQ(containerOf("<!DOCTYPE"), Container::kMarkup);
  EXPECT_EQ(containerOf(R"({"error":1})"), Container::kMarkup);
  EXPECT_EQ(containerOf(std::string("Microsoft MSFZ Container\r\n\x1A"
                                    "ALD\0\0",
                                    32)),
            Container::kMsfz);
  EXPECT_EQ(containerOf(std::string("Microsoft C/C++ program database 2.00\r\n\x1AJG\0\0", 44)),
            Container::kOldPdb);
  EXPECT_EQ(containerOf(""), Container::kUnknown);
  EXPECT_EQ(containerOf("MSC"), Container::kUnknown);
}

}  // namespace
}  // namespace symsrv_1_0::internal
