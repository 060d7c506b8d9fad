// `quiver archive`: copies filed by hand, and what an archive shows of itself.

#include <filesystem>
#include <nlohmann/json.hpp>
#include <ostream>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "program_fixture.h"
#include "run_program.h"

namespace quiver_tool {
namespace {

using nlohmann::json;
using testing::HasSubstr;

const std::string kMd5OfNew = "22af645d1859cb5ca6da0c484f1f37ea";  // "new"
const std::string kMd5OfOld = "149603e6c03516362a8da23f624db945";  // "old"

class ProgramWithArchive : public Program {
 protected:
  ProgramWithArchive() { m_tree.addDirectory("r"); }

  std::string copy(const std::string& folder, const std::string& name, const std::string& md5) {
    return "r/archive/" + folder + "/" + name + "/" + md5 + "/" + name;
  }
  RunResult show(const char* option) const { return runProgram({"archive", option, path("r")}); }
};

TEST_F(ProgramWithArchive, FilesCopiesOfEveryCategory) {
  const std::string file = add("a.c", "new");
  const std::vector<std::vector<std::string>> rows = {
      {"bin", "binaries"}, {"sym", "symbols"}, {"src", "sources"}, {"all", "all"}};
  for (const std::vector<std::string>& row : rows) {
    const RunResult run = runProgram({"archive", path("r"), file, "--category", row[0]});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, file + ": archived\n");
    EXPECT_EQ(run.err, "");
    EXPECT_TRUE(std::filesystem::exists(path(copy(row[1], "a.c", kMd5OfNew)))) << row[1];
  }
}

TEST_F(ProgramWithArchive, SaysForEachFileWhatCameOfIt) {
  const std::string one = add("a.c", "new");
  const std::string two = add("b.c", "old");
  runProgram({"archive", path("r"), one, "--category", "src"});
  const RunResult again = runProgram({"archive", "--category", "src", path("r"), one, two});
  EXPECT_EQ(again.status, 0);
  EXPECT_EQ(again.out, one + ": already in the archive\n" + two + ": archived\n");
  const RunResult failed =
      runProgram({"archive", path("r"), path("none"), two, "--category", "src"});
  EXPECT_EQ(failed.status, 1);
  EXPECT_EQ(failed.out,
            path("none") + ": not archived, the file cannot be read\n" + two +
                ": already in the archive\n");
}

TEST_F(ProgramWithArchive, TakesFilesWithUnusualNames) {
  const std::vector<std::string> names = {
      "[a,b]", "{}", "%%", "find", "src", "archive", "++", "'q'", "a b"};
  RunSettings settings;
  settings.directory = path("");
  std::vector<std::string> arguments{"archive", "r", "--category", "all"};
  std::string expected;
  for (const std::string& name : names) {
    add(name);
    arguments.push_back(name);
    expected += name + ": archived\n";
  }
  add("-v");
  add("--");
  arguments.insert(arguments.end(), {"--", "-v", "--"});
  expected += "-v: archived\n--: archived\n";
  const RunResult run = runProgram(arguments, settings);
  EXPECT_EQ(run.out, expected) << run.err;
  EXPECT_EQ(run.status, 0);
}

TEST_F(ProgramWithArchive, IsSearchedAfterwards) {
  const std::string file = add("a.c", "new");
  runProgram({"archive", path("r"), file, "--category", "src"});
  EXPECT_EQ(runProgram({"find", "src", "/x/a.c", "--result", path("r")}).out,
            path(copy("sources", "a.c", kMd5OfNew)) + "\n");
}

TEST_F(ProgramWithArchive, ShowsNoRowsWhenThereIsNoArchive) {
  for (const char* option : {"--list", "--verify"}) {
    const RunResult run = show(option);
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, "name  category  md5  size  content\n");
    EXPECT_EQ(run.err, "");
  }
  EXPECT_EQ(runProgram({"archive", "--list", path("r"), "--json"}).out, "[]\n");
}

TEST_F(ProgramWithArchive, ShowsEveryCopy) {
  runProgram({"archive", path("r"), add("a.c", "new"), "--category", "src"});
  runProgram({"archive", path("r"), add("a.c", "old"), "--category", "src"});
  runProgram({"archive", path("r"), add("b\xC3\xA4.exe", "old"), "--category", "bin"});
  const std::string expected =
      "name    category  md5                               size  content\n"
      "b\xC3\xA4.exe  bin       " +
      kMd5OfOld + "  3     agrees\n" + "a.c     src       " + kMd5OfOld + "  3     agrees\n" +
      "a.c     src       " + kMd5OfNew + "  3     agrees\n";
  for (const char* option : {"--list", "--verify"}) {
    const RunResult run = show(option);
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, expected);
    EXPECT_EQ(run.err, "");
  }
}

TEST_F(ProgramWithArchive, ReportsACopyWithOtherContent) {
  add(copy("symbols", "a.pdb", kMd5OfNew), "ne");
  const std::string expected =
      "name   category  md5                               size  content\n"
      "a.pdb  sym       d4f917633649a3c47c7ab917fa990146  2     differs\n";  // "ne"
  const RunResult listed = show("--list");
  EXPECT_EQ(listed.status, 0);
  const RunResult verified = show("--verify");
  EXPECT_EQ(verified.status, 1);
  EXPECT_EQ(verified.out, listed.out);
  EXPECT_EQ(verified.out, expected);
  EXPECT_EQ(verified.err, "quiver: 1 of 1 does not agree\n");
}

struct ForeignRow {
  const char* name;
  const char* file;
  const char* shown;
};

void PrintTo(const ForeignRow& row, std::ostream* out) {
  *out << row.name;
}

class ForeignInArchive : public ProgramWithArchive,
                         public testing::WithParamInterface<ForeignRow> {};

TEST_P(ForeignInArchive, IsReported) {
  add(copy("all", "a.c", kMd5OfNew), "new");
  add(std::string("r/") + GetParam().file, "12345");
  const json document = json::parse(runProgram({"archive", "--list", path("r"), "--json"}).out);
  ASSERT_EQ(document.size(), 2u);
  EXPECT_EQ(document.at(1).at("path"), GetParam().shown);
  EXPECT_EQ(document.at(1).at("content"), "foreign");
  EXPECT_EQ(document.at(1).at("md5"), nullptr);
  const RunResult run = show("--verify");
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out, HasSubstr(std::string("\n") + GetParam().shown + "  "));
  EXPECT_EQ(run.err, "quiver: 1 of 2 does not agree\n");
}

INSTANTIATE_TEST_SUITE_P(
    Program,
    ForeignInArchive,
    testing::Values(
        ForeignRow{"FileInTheArchive", "archive/note", "archive/note"},
        ForeignRow{"UnknownKind", "archive/other/a.c/x/a.c", "archive/other"},
        ForeignRow{"FileInAKind", "archive/sources/note", "archive/sources/note"},
        ForeignRow{"FolderThatIsNoMd5", "archive/sources/a.c/12/a.c", "archive/sources/a.c/12"},
        ForeignRow{"FileBesideTheVersions", "archive/sources/a.c/a.c", "archive/sources/a.c/a.c"},
        ForeignRow{"PartOfACopy",
                   "archive/sources/a.c/22af645d1859cb5ca6da0c484f1f37ea/a.c.part",
                   "archive/sources/a.c/22af645d1859cb5ca6da0c484f1f37ea/a.c.part"},
        ForeignRow{"FolderBesideACopy",
                   "archive/sources/a.c/22af645d1859cb5ca6da0c484f1f37ea/a.c/x",
                   "archive/sources/a.c/22af645d1859cb5ca6da0c484f1f37ea/a.c"}),
    [](const auto& test) { return test.param.name; });

TEST_F(ProgramWithArchive, PrintsJson) {
  add(copy("sources", "a.c", kMd5OfOld), "new");
  const RunResult run = runProgram({"archive", "--verify", path("r"), "--json"});
  EXPECT_EQ(run.status, 1);
  const json expected = {{{"path", copy("sources", "a.c", kMd5OfOld).substr(2)},
                          {"name", "a.c"},
                          {"category", "src"},
                          {"folder_md5", kMd5OfOld},
                          {"md5", kMd5OfNew},
                          {"size", 3},
                          {"content", "differs"}}};
  EXPECT_EQ(json::parse(run.out), expected);
}

TEST_F(ProgramWithArchive, NeedsAResultDirectory) {
  const RunResult run = runProgram({"archive", "--list", path("none")});
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err,
            "quiver: no such directory: " + path("none") + "\nTry 'quiver archive --help'.\n");
}

}  // namespace
}  // namespace quiver_tool
