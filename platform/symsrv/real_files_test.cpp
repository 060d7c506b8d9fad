// Files that real compilers and linkers made.

#include <cstdlib>
#include <fstream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "symsrv/files.h"
#include "symsrv/pdb_identity.h"
#include "symsrv/text.h"
#include "symsrv/verify.h"

namespace symsrv_1_0::internal {
namespace {

using ::testing::HasSubstr;

std::string pathOf(const std::string& name) {
  return std::string(SYMSRV_REAL_FILES) + "/" + name;
}

std::unique_ptr<FileSource> open(const std::string& name) {
  std::unique_ptr<FileSource> file = FileSource::open(pathOf(name));
  EXPECT_TRUE(file) << name;
  return file;
}

std::string textOf(const std::string& name) {
  std::ifstream file(pathOf(name));
  std::string line;
  EXPECT_TRUE(std::getline(file, line));
  return line;
}

std::string check(const std::string& binary, const std::string& symbols) {
  const SoughtResult sought = soughtFileOf(*open(binary), binary);
  return sought.file ? mismatch(*open(symbols), *sought.file) : sought.reason;
}

class RealPair : public ::testing::TestWithParam<std::pair<const char*, const char*>> {};

TEST_P(RealPair, FitsTogether) {
  EXPECT_EQ(check(GetParam().first, GetParam().second), "");
}

INSTANTIATE_TEST_SUITE_P(Table,
                         RealPair,
                         ::testing::Values(std::pair("tiny64.exe", "tiny64.pdb"),
                                           std::pair("tiny32.exe", "tiny32.pdb"),
                                           std::pair("blocks.exe", "blocks.pdb"),
                                           std::pair("repro.exe", "repro.pdb"),
                                           std::pair("tiny64.exe", "rewritten.pdb"),
                                           std::pair("hello", "hello.debug"),
                                           std::pair("hello", "hello.full"),
                                           std::pair("anonymous", "anonymous.debug")));

TEST(RealFiles, OfOtherBuildsAreRefused) {
  EXPECT_THAT(check("tiny64.exe", "other/tiny64.pdb"), HasSubstr("GUID differs"));
  EXPECT_THAT(check("tiny64.exe", "tiny32.pdb"), HasSubstr("GUID differs"));
  EXPECT_THAT(check("tiny64.exe", "hello.debug"), HasSubstr("ELF"));
  EXPECT_THAT(check("hello", "anonymous.debug"), HasSubstr("build id differs"));
  EXPECT_THAT(check("anonymous", "hello.debug"), HasSubstr("checksum differs"));
}

TEST(RealFiles, HaveTheIdentityThatOtherToolsSee) {
  const std::optional<PeIdentity> pe = readPeIdentity(*open("tiny64.exe"));
  ASSERT_TRUE(pe && pe->codeView);
  EXPECT_EQ(guidText(pe->codeView->guid), textOf("tiny64.guid"));
  EXPECT_EQ(pe->codeView->name, "tiny64.pdb");
  const std::optional<PdbIdentity> pdb = readPdbIdentity(*open("rewritten.pdb"));
  ASSERT_TRUE(pdb);
  EXPECT_EQ(pdb->age, 3u);
  EXPECT_EQ(pdb->dbiAge, 1u);
  const std::optional<ElfIdentity> elf = readElfIdentity(*open("hello"));
  ASSERT_TRUE(elf && elf->debugLink);
  EXPECT_EQ(lowerHexBytes(elf->buildId), textOf("hello.id"));
  EXPECT_EQ(elf->debugLink->name, "hello.debug");
}

TEST(RealFiles, WithHostileNamesAskForOrdinaryOnes) {
  const SoughtResult upwards = soughtFileOf(*open("hostile.exe"), "hostile.exe");
  ASSERT_TRUE(upwards.file);
  EXPECT_EQ(upwards.file->name, "evil.pdb");
  EXPECT_THAT(soughtFileOf(*open("stream.exe"), "stream.exe").reason, HasSubstr("unsafe"));
}

TEST(RealFiles, CutOffAnywhereAreRefused) {
  for (const auto& [binary, symbols] :
       {std::pair("tiny64.exe", "tiny64.pdb"), {"hello", "hello.debug"}}) {
    const std::unique_ptr<FileSource> whole = open(symbols);
    std::string bytes(static_cast<std::size_t>(whole->size()), '\0');
    ASSERT_TRUE(whole->read(0, bytes.data(), bytes.size()));
    const SoughtResult sought = soughtFileOf(*open(binary), binary);
    for (std::size_t size = 0; size < bytes.size(); size += 97) {
      MemorySource cut(std::string_view(bytes).substr(0, size));
      ASSERT_NE(mismatch(cut, *sought.file), "") << size;
    }
    MemorySource last(std::string_view(bytes).substr(0, bytes.size() - 1));
    EXPECT_NE(mismatch(last, *sought.file), "");
    MemorySource all(bytes);
    EXPECT_EQ(mismatch(all, *sought.file), "");
  }
}

}  // namespace
}  // namespace symsrv_1_0::internal
