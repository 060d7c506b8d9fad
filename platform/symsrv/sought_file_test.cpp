// From binaries to places in stores; names that would lead elsewhere.

#include "symsrv/sought_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "symsrv/file_builder_test_support.h"
#include "symsrv/pointer_file.h"
#include "symsrv/safe_name.h"

namespace symsrv_1_0::internal {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

SoughtResult sought(std::string_view bytes, std::string_view name = "/b/tiny64.exe") {
  MemorySource source(bytes);
  return soughtFileOf(source, name);
}

std::string pathOf(const Place& place, bool hasTwoTiers = false) {
  std::string path;
  for (const std::string& name : place.components(hasTwoTiers, place.file)) path += "/" + name;
  return path;
}

std::string firstPath(std::string_view bytes) {
  const SoughtResult result = sought(bytes);
  return result.file ? pathOf(result.file->places.front()) : result.reason;
}

TEST(SoughtFile, HasGuidAndAgeInItsKey) {
  EXPECT_EQ(firstPath(makePe(true, {rsdsRecord("tiny64.pdb")})),
            "/tiny64.pdb/1346E77CD2BB45C84C4C44205044422E1/tiny64.pdb");
}

TEST(SoughtFile, AgesAreLowerCaseHexadecimal) {
  EXPECT_THAT(firstPath(makePe(true, {rsdsRecord("t.pdb", 10)})), HasSubstr("5044422Ea/"));
  EXPECT_THAT(firstPath(makePe(true, {rsdsRecord("t.pdb", 16)})), HasSubstr("5044422E10/"));
  EXPECT_THAT(firstPath(makePe(true, {rsdsRecord("t.pdb", 0xFFFFFFFF)})),
              HasSubstr("5044422Effffffff/"));
}

TEST(SoughtFile, AgeNullMayBeLeftOut) {
  const SoughtResult result = sought(makePe(true, {rsdsRecord("t.pdb", 0)}));
  ASSERT_TRUE(result.file);
  ASSERT_EQ(result.file->places.size(), 2u);
  EXPECT_EQ(pathOf(result.file->places[0]), "/t.pdb/1346E77CD2BB45C84C4C44205044422E0/t.pdb");
  EXPECT_EQ(pathOf(result.file->places[1]), "/t.pdb/1346E77CD2BB45C84C4C44205044422E/t.pdb");
}

TEST(SoughtFile, OldRecordsHaveASignature) {
  EXPECT_EQ(firstPath(makePe(false, {nb10Record("msvcrt.pdb", 0x37A8F40E, 2)})),
            "/msvcrt.pdb/37A8F40E2/msvcrt.pdb");
}

TEST(SoughtFile, PortableOnesHaveNoAge) {
  Bytes file = makePe(true, {rsdsRecord("m.pdb")});
  file.put16(PeLayout::kDebugDirectory + 10, 0x504D);
  EXPECT_EQ(firstPath(file), "/m.pdb/1346E77CD2BB45C84C4C44205044422EFFFFFFFF/m.pdb");
}

TEST(SoughtFile, TakesItsNameFromTheBinaryWhenNoneIsRecorded) {
  EXPECT_THAT(firstPath(makePe(true, {rsdsRecord("")})), HasSubstr("/tiny64.pdb/"));
}

TEST(SoughtFile, OnlyTheLastComponentOfARecordedNameCounts) {
  for (const char* name : {R"(c:\b\t.pdb)",
                           "/b/t.pdb",
                           R"(..\..\t.pdb)",
                           "../../t.pdb",
                           R"(\\server\share\t.pdb)",
                           R"(a/b\t.pdb)"})
    EXPECT_THAT(firstPath(makePe(true, {rsdsRecord(name)})), ::testing::StartsWith("/t.pdb/"));
}

TEST(SoughtFile, SecondTierIsTheFirstTwoCharacters) {
  const SoughtResult result = sought(makePe(true, {rsdsRecord("tiny.pdb", 1)}));
  EXPECT_EQ(pathOf(result.file->places[0], true),
            "/ti/tiny.pdb/1346E77CD2BB45C84C4C44205044422E1/tiny.pdb");
  const SoughtResult wide = sought(makePe(true, {rsdsRecord("\xC3\xA9\xC3\xA8x.pdb", 1)}));
  EXPECT_EQ(wide.file->places[0].folderNames(true)[0], "\xC3\xA9\xC3\xA8");
  const SoughtResult dotted = sought(makePe(true, {rsdsRecord("a.pdb", 1)}));
  EXPECT_EQ(dotted.file->places[0].folderNames(true)[0], "a.pdb");
}

TEST(SoughtFile, MayLieUnderItsKeyInLowerCaseToo) {
  SoughtResult result = sought(makePe(true, {rsdsRecord("Tiny.PDB", 10)}));
  alsoInLowerCase(*result.file);
  ASSERT_EQ(result.file->places.size(), 2u);
  EXPECT_EQ(pathOf(result.file->places[0]), "/Tiny.PDB/1346E77CD2BB45C84C4C44205044422Ea/Tiny.PDB");
  EXPECT_EQ(pathOf(result.file->places[1]), "/tiny.pdb/1346e77cd2bb45c84c4c44205044422ea/tiny.pdb");
  EXPECT_TRUE(result.file->places[1].isKeyed);
  EXPECT_EQ(result.file->cachePlace(), &result.file->places[0]);
  SoughtResult elf = sought(makeElf());
  alsoInLowerCase(*elf.file);
  EXPECT_EQ(elf.file->places.size(), 3u) << "its keys have no other spelling";
}

TEST(SoughtFile, ElfFilesGoByBuildId) {
  const SoughtResult result = sought(makeElf());
  ASSERT_TRUE(result.file);
  ASSERT_EQ(result.file->places.size(), 3u);
  EXPECT_EQ(pathOf(result.file->places[0]), "/.build-id/06/275af701020304.debug");
  EXPECT_FALSE(result.file->places[0].onServers);
  EXPECT_EQ(pathOf(result.file->places[1]), "/buildid/06275af701020304/debuginfo");
  EXPECT_FALSE(result.file->places[1].inDirectories);
  EXPECT_EQ(pathOf(result.file->places[2]),
            "/_.debug/elf-buildid-sym-06275af701020304000000000000000000000000/_.debug");
  EXPECT_EQ(result.file->cachePlace(), &result.file->places[0]);
}

TEST(SoughtFile, ElfFilesWithoutBuildIdGoByNameAndAreNotCached) {
  const SoughtResult result = sought(makeElf({.buildId = "", .debugLink = "../hello.debug"}));
  ASSERT_TRUE(result.file);
  EXPECT_THAT(pathOf(result.file->places[0]), "/hello.debug");
  EXPECT_TRUE(result.file->isByChecksum());
  EXPECT_EQ(result.file->cachePlace(), nullptr);
}

TEST(SoughtFile, SaysWhyThereIsNone) {
  EXPECT_THAT(sought("text").reason, HasSubstr("neither a PE nor an ELF"));
  EXPECT_THAT(sought(makePe(true, {})).reason, HasSubstr("names no symbol file"));
  EXPECT_THAT(sought(makeElf({.buildId = ""})).reason, HasSubstr("neither a build id"));
}

TEST(SoughtFile, NeverHasTheNameOfAStoresOwnFile) {
  for (const char* name : {"index2.txt", "INDEX2.TXT", "pingme.txt", "wantsptr.txt", "000admin"})
    EXPECT_THAT(sought(makePe(true, {rsdsRecord(name)})).reason, HasSubstr("unsafe")) << name;
}

class HostileName : public ::testing::TestWithParam<std::string> {};

TEST_P(HostileName, LeadsNowhere) {
  const std::string& name = GetParam();
  EXPECT_FALSE(isSafeComponent(name));
  EXPECT_THAT(sought(makePe(true, {rsdsRecord("c:\\b\\" + name)})).reason, HasSubstr("unsafe"));
  EXPECT_THAT(sought(makeElf({.buildId = "", .debugLink = "b/" + name})).reason,
              HasSubstr("unsafe"));
}

INSTANTIATE_TEST_SUITE_P(Table,
                         HostileName,
                         ::testing::Values("..",
                                           ".",
                                           "x.pdb:stream",
                                           "c:x.pdb",
                                           "a*b",
                                           "a?b",
                                           "a|b",
                                           "a<b",
                                           "a>b",
                                           "a\"b",
                                           "a\nb",
                                           "a\x7F",
                                           "x.pdb.",
                                           "x.pdb ",
                                           " x.pdb",
                                           "CON",
                                           "nul.pdb",
                                           "Com1.x.pdb",
                                           "lpt9",
                                           "aux",
                                           "COM\xC2\xB9.pdb",
                                           "CONIN$",
                                           "nul .pdb",
                                           "\xFF.pdb",
                                           "\xC0\xAE\xC0\xAE",
                                           std::string(201, 'x')));

TEST(SafeName, OrdinaryNamesAreSafe) {
  for (const char* name : {"a.pdb",
                           ".build-id",
                           "_.debug",
                           "com.pdb",
                           "com10.pdb",
                           "console.pdb",
                           "a b+c#d%e.pdb",
                           "\xC3\xA9.pdb",
                           "..a",
                           "nulx"})
    EXPECT_TRUE(isSafeComponent(name)) << name;
  EXPECT_TRUE(isSafeId("elf-buildid-sym-00"));
  for (const char* id : {"", "..", "a/b", "a.b", "a b"}) EXPECT_FALSE(isSafeId(id)) << id;
}

TEST(PointerFile, HasAPathOrAReason) {
  EXPECT_EQ(parsePointerFile(" \\\\s\\x\\a.pdb\r\n\0").text, R"(\\s\x\a.pdb)");
  EXPECT_EQ(parsePointerFile("PATH:/x/a.pdb\n").text, "/x/a.pdb");
  EXPECT_EQ(parsePointerFile("path: a.pdb").kind, PointerFile::Kind::kPath);
  EXPECT_EQ(parsePointerFile("MSG: gone\x1B").kind, PointerFile::Kind::kMessage);
  EXPECT_EQ(parsePointerFile("MSG: gone\x1B").text, R"(gone\x1b)");
}

TEST(PointerFile, NonsenseIsNothing) {
  for (const std::string& text : {std::string(),
                                  std::string(" \n"),
                                  std::string("PATH:"),
                                  std::string("a\nb"),
                                  std::string("a\0b", 3),
                                  std::string("\xFF"),
                                  std::string(4097, 'x')})
    EXPECT_EQ(parsePointerFile(text).kind, PointerFile::Kind::kNone);
}

}  // namespace
}  // namespace symsrv_1_0::internal
