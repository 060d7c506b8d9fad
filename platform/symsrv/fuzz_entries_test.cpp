// What fuzzers ask, asked a few thousand times: damaged files of each kind, and how much memory
// they can make a reader take.

#include "symsrv/fuzz_entries.h"

#include <random>
#include <string>

#include <gtest/gtest.h>

#include "symsrv/file_builder_test_support.h"

namespace symsrv_1_0::internal {
namespace {

struct Entry {
  const char* name;
  void (*run)(std::string_view);
  std::string seed;
};

class FuzzEntry : public ::testing::TestWithParam<Entry> {};

TEST_P(FuzzEntry, SurvivesDamage) {
  std::mt19937 random(1);
  const std::string& seed = GetParam().seed;
  std::uniform_int_distribution<std::size_t> place(0, seed.size() - 1);
  const char kBytes[] = {'\0', '\xFF', '\x7F', '\x80', '\x01', '*', '\\', ':'};
  for (int i = 0; i < 3000; ++i) {
    std::string text = seed;
    for (int n = 0; n < 1 + i % 6; ++n) text[place(random)] = kBytes[random() % sizeof kBytes];
    if (i % 5 == 0)
      text.resize(place(random));
    GetParam().run(text);
  }
  SUCCEED() << "a broken promise ends the process";
}

const Entry kEntries[] = {
    {"Pe", fuzzPe, makePe(true, {rsdsRecord("a.pdb"), nb10Record("b.pdb", 1, 2)}).data()},
    {"Pe32", fuzzPe, makePe(false, {rsdsRecord("..\\a.pdb")}).data()},
    {"Pdb", fuzzPdb, makePdb({.emptyStreams = 40}).data()},
    {"Elf", fuzzElf, makeElf({.debugLink = "a.debug"}).data()},
    {"Elf32", fuzzElf, makeElf({.is64Bit = false, .isBigEndian = true}).data()},
    {"Chain", fuzzChain, "symsrv*symsrv.dll*c:\\a*https://u:p@host:8/p?q*"},
    {"Pointer", fuzzPointerFile, "PATH:\\\\server\\share\\a.pdb\r\n"},
};
INSTANTIATE_TEST_SUITE_P(Table, FuzzEntry, ::testing::ValuesIn(kEntries), [](const auto& row) {
  return std::string(row.param.name);
});

}  // namespace
}  // namespace symsrv_1_0::internal
