// The program as a user meets it: arguments in, paths, texts and exit status out.

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <ostream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "program_fixture.h"
#include "run_program.h"
#include "support/temp_tree.h"
#include "text_encoding.h"

namespace quiver_tool {
namespace {

using nlohmann::json;
using quiver_test::TempTree;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr const char* kMd5OfNew = "22af645d1859cb5ca6da0c484f1f37ea";      // "new"
constexpr const char* kMd5OfNothing = "d41d8cd98f00b204e9800998ecf8427e";  // ""

TEST_F(Program, PrintsThePathAndNothingElse) {
  const std::string file = add("src/a.c");
  const RunResult run = runProgram({"find", "src", "C:\\ci\\lib\\a.c", "-d", path("src")});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, file + "\n");
  EXPECT_EQ(run.err, "");
}

TEST_F(Program, FindsEveryKind) {
  const std::string bin = add("d/qv_app.exe");
  const std::string sym = add("d/qv_app.pdb");
  EXPECT_EQ(runProgram({"find", "bin", "C:\\o\\qv_app.exe", "-d", path("d")}).out, bin + "\n");
  EXPECT_EQ(runProgram({"find", "sym", "C:\\o\\qv_app.pdb", "-d", path("d")}).out, sym + "\n");
}

TEST_F(Program, AnswersWithARelativeDirectoryToo) {
  const std::string file = add("work/src/a.c");
  RunSettings settings;
  settings.directory = path("work");
  EXPECT_EQ(runProgram({"find", "src", "/x/a.c", "-d", "src"}, settings).out, file + "\n");
}

TEST_F(Program, LooksIntoTreesOnlyWhenAsked) {
  const std::string file = add("src/deep/er/a.c");
  EXPECT_EQ(runProgram({"find", "src", "a.c", "-d", path("src")}).status, 1);
  EXPECT_EQ(runProgram({"find", "src", "a.c", "-d", path("src") + ",recursive"}).out, file + "\n");
}

TEST_F(Program, TakesTheFirstOfTheDirectories) {
  add("one/a.c");
  add("two/a.c");
  EXPECT_EQ(runProgram({"find", "src", "a.c", "-d", path("two"), "-d", path("one")}).out,
            path("two/a.c") + "\n");
  EXPECT_EQ(runProgram({"find", "src", "a.c", "-d", path("one"), "--dir", path("two")}).out,
            path("one/a.c") + "\n");
}

TEST_F(Program, TakesHighPriorityDirectoriesFirst) {
  add("one/a.c");
  add("two/a.c");
  EXPECT_EQ(runProgram({"find", "src", "a.c", "-d", path("one"), "-d", path("two") + ",high"}).out,
            path("two/a.c") + "\n");
}

TEST_F(Program, UsesOnlyDirectoriesOfTheKind) {
  add("one/a.c");
  add("two/a.c");
  EXPECT_EQ(
      runProgram({"find", "src", "a.c", "-d", "sym:" + path("one"), "-d", "all:" + path("two")})
          .out,
      path("two/a.c") + "\n");
  EXPECT_EQ(
      runProgram({"find", "src", "a.c", "-d", "all:" + path("one"), "-d", "src:" + path("two")})
          .out,
      path("two/a.c") + "\n");
}

TEST_F(Program, TakesDirectoriesWithUnusualNames) {
  for (const char* name : {"a,b", "a,high", "{}", "%%", "[x,y]", "'q'", "a b"}) {
    const std::string file = add((std::string(name) + "/a.c").c_str());
    const RunResult run = runProgram({"find", "src", "a.c", "-d", path(name) + ","});
    EXPECT_EQ(run.out, file + "\n") << name << ": " << run.err;
  }
  RunSettings settings;
  settings.directory = path("");
  for (const char* name : {"{}", "[x,y]", "%%", "a,b"}) {
    EXPECT_EQ(runProgram({"find", "src", "a.c", "-d", name}, settings).out,
              path((std::string(name) + "/a.c").c_str()) + "\n");
  }
}

TEST_F(Program, TakesNamesThatLookLikeCommandsOrOptions) {
  for (const char* name : {"find", "src", "bin", "-v", "--all", "[a]", "{}"}) {
    const std::string file = add((std::string("d/") + name).c_str());
    EXPECT_EQ(runProgram({"find", "src", "-d", path("d"), "--", name}).out, file + "\n") << name;
  }
  EXPECT_EQ(runProgram({"find", "src", "bin", "-d", path("d")}).out, path("d/bin") + "\n");
  EXPECT_EQ(runProgram({"find", "src", "src", "-d", path("d")}).out, path("d/src") + "\n");
}

TEST_F(Program, MatchesLongTailsFirstAndTheRecordedLetterCaseBeforeOthers) {
  std::string expected;
  for (const char* name : {"s/ci/lib/Parse.c",
                           "s/any/lib/Parse.c",
                           "s/other/LIB/parse.c",
                           "s/any/where/Parse.c",
                           "s/zone/PARSE.C"})
    expected += add(name) + "\n";
  const RunResult run =
      runProgram({"find", "src", "C:\\ci\\lib\\Parse.c", "-d", path("s") + ",recursive", "--all"});
  EXPECT_EQ(run.out, expected);
}

TEST_F(Program, FindsACopyInAnArchive) {
  const std::string file = add("archive/a.c/0123/a.c");
  const RunResult run = runProgram({"find", "src", "/x/a.c", "--archive", path("archive"), "-v"});
  EXPECT_EQ(run.out, file + "\n");
  EXPECT_THAT(run.err, HasSubstr("step 1, archive directories"));
}

TEST_F(Program, LooksAroundTheBinary) {
  const std::string file = add("out/qv_app.debug");
  const RunResult run =
      runProgram({"find", "sym", "qv_app.debug", "--binary", path("out/bin/qv_app"), "-v"});
  EXPECT_EQ(run.out, file + "\n");
  EXPECT_THAT(run.err, HasSubstr("step 5, around the binary"));
}

TEST_F(Program, LooksAboveABinaryThatIsNamedFromTheCurrentDirectory) {
  const std::string file = add("out/qv_app.debug");
  add("out/bin/x64/qv_app");
  RunSettings settings;
  settings.directory = path("out/bin");
  EXPECT_EQ(runProgram({"find", "sym", "qv_app.debug", "--binary", "x64/qv_app"}, settings).out,
            file + "\n");
  EXPECT_EQ(runProgram({"find", "sym", "qv_app.debug", "--binary", "x86/qv_app"}, settings).status,
            1);
}

TEST_F(Program, TakesOnlyTheVersionWithTheChecksum) {
  add("old/a.c", "old");
  const std::string file = add("new/a.c", "new");
  const RunResult run = runProgram(
      {"find", "src", "a.c", "-d", path("old"), "-d", path("new"), "--md5", kMd5OfNew, "-v"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, file + "\n");
  EXPECT_EQ(run.err,
            "quiver: " + file +
                ": found (step 6, low-priority directories; confidence 0, confirmed)\n"
                "quiver: " +
                path("old/a.c") +
                ": rejected, it has another checksum (step 6, low-priority directories; code 1, "
                "the source differs %ChecksumMismatch)\n");
}

TEST_F(Program, ChecksBinariesAndSymbolFilesByTheirOwnRules) {
  add("d/qv_app.exe", "old");
  for (const char* kind : {"bin", "sym"}) {
    const RunResult run =
        runProgram({"find", kind, "qv_app.exe", "-d", path("d"), "--md5", kMd5OfNew, "-v"});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, HasSubstr("code 0, unusable %ChecksumMismatch"));
  }
}

TEST_F(Program, TriesTheSuggestionFirst) {
  add("d/a.c");
  const std::string other = add("other/renamed.c");
  const RunResult run =
      runProgram({"find", "src", "a.c", "-d", path("d") + ",high", "--suggest", other, "-v"});
  EXPECT_EQ(run.out, other + "\n");
  EXPECT_THAT(run.err, HasSubstr("step 7, suggested path"));
}

TEST_F(Program, TakesTheRecordedSystem) {
  const std::string file = add("d/qv_a.dll");
  for (const char* os : {"windows", "other"}) {
    EXPECT_EQ(runProgram({"find", "bin", "qv_a.dll", "-d", path("d"), "--os", os}).out,
              file + "\n");
  }
  const RunResult run = runProgram({"find", "bin", "a", "--os", "dos"});
  EXPECT_EQ(run.status, 2);
  EXPECT_THAT(run.err, StartsWith("quiver: --os: 'dos' is neither 'windows' nor 'other'\n"));
}

TEST_F(Program, ListsAllCandidates) {
  const std::string first = add("high/a.c");
  const std::string second = add("low/a.c");
  const RunResult run =
      runProgram({"find", "src", "a.c", "-d", path("low"), "-d", path("high") + ",high", "--all"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, first + "\n" + second + "\n");
  EXPECT_EQ(
      run.err,
      "quiver: " + first +
          ": found (step 2, high-priority directories; confidence 1, not contradicted)\n"
          "quiver: " +
          second +
          ": also valid (step 6, low-priority directories; confidence 1, not contradicted)\n");
}

TEST_F(Program, StopsAtTheFirstStepThatFinds) {
  add("high/a.c");
  add("low/a.c");
  const RunResult run =
      runProgram({"find", "src", "a.c", "-d", path("low"), "-d", path("high") + ",high", "-v"});
  EXPECT_THAT(run.err, Not(HasSubstr(path("low/a.c"))));
}

TEST_F(Program, SaysThatNothingExisted) {
  const RunResult run = runProgram({"find", "src", "/x/a.c"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err,
            "quiver: no source file found for '/x/a.c': no candidate existed in any place "
            "searched\n");
}

TEST_F(Program, SaysWhatWasRejectedAndWhatIsMissing) {
  add("one/a.c", "old");
  m_tree.addUnreadableFile("two/a.c");
  add("file");
  const RunResult run = runProgram({"find",
                                    "src",
                                    "a.c",
                                    "-d",
                                    path("one"),
                                    "-d",
                                    path("two"),
                                    "-d",
                                    path("none"),
                                    "-d",
                                    path("file"),
                                    "--archive",
                                    path("gone"),
                                    "--md5",
                                    kMd5OfNew,
                                    "--suggest",
                                    path("lost")});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err,
            "quiver: no source file found for 'a.c': " + path("one/a.c") +
                " has another checksum, " + path("two/a.c") + " cannot be opened; the suggested " +
                path("lost") + " does not exist; no such directory: " + path("gone") + ", " +
                path("none") + ", " + path("file") + "\n");
}

TEST_F(Program, NamesOnlyTheFirstOfManyRejected) {
  std::vector<std::string> arguments{
      "find", "src", "a.c", "--md5", kMd5OfNew, "-d", path("d") + ",recursive"};
  for (const char* name :
       {"d/1/a.c", "d/2/a.c", "d/3/a.c", "d/4/a.c", "d/5/a.c", "d/6/a.c", "d/7/a.c"})
    add(name, "old");
  const RunResult brief = runProgram(arguments);
  EXPECT_THAT(brief.err,
              AllOf(HasSubstr(path("d/5/a.c")),
                    Not(HasSubstr(path("d/6/a.c"))),
                    HasSubstr("and 2 more (see -v)")));
  arguments.push_back("-v");
  EXPECT_THAT(runProgram(arguments).err,
              AllOf(HasSubstr(path("d/7/a.c") + ": rejected"), Not(HasSubstr("more (see"))));
}

TEST_F(Program, WarnsOfMissingDirectoriesOnlyWhenItMatters) {
  add("d/a.c");
  const RunResult found = runProgram({"find", "src", "a.c", "-d", path("d"), "-d", path("none")});
  EXPECT_EQ(found.err, "");
  const RunResult verbose =
      runProgram({"find", "src", "a.c", "-d", path("d"), "-d", path("none"), "-v"});
  EXPECT_THAT(verbose.err, HasSubstr("quiver: " + path("none") + ": no such directory\n"));
  const RunResult otherKind =
      runProgram({"find", "src", "b.c", "-d", "sym:" + path("none"), "-d", "srv*x*https://h"});
  EXPECT_THAT(otherKind.err, Not(HasSubstr("no such directory")));
}

TEST_F(Program, SpellsControlCharactersOutInMessages) {
  const RunResult run = runProgram({"find", "src", "a\x1B[2J\n.c"});
  EXPECT_THAT(run.err, AllOf(HasSubstr("'a\\x1b[2J\\x0a.c'"), Not(HasSubstr("\x1B"))));
}

TEST_F(Program, FindsAnEmptyFileByItsChecksum) {
  const std::string file = add("d/a.c");
  EXPECT_EQ(runProgram({"find", "src", "a.c", "-d", path("d"), "--md5", kMd5OfNothing}).out,
            file + "\n");
}

TEST_F(Program, PrintsJsonForAFoundFile) {
  add("old/a.c", "old");
  const std::string file = add("new/a.c", "new");
  const RunResult run = runProgram({"find",
                                    "src",
                                    "a.c",
                                    "-d",
                                    path("old"),
                                    "-d",
                                    path("new"),
                                    "-d",
                                    path("none"),
                                    "--md5",
                                    kMd5OfNew,
                                    "--json"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, "");
  const json document = json::parse(run.out);
  EXPECT_EQ(document.at("found").at("path"), file);
  EXPECT_EQ(document.at("found").at("confidence"), 0);
  EXPECT_EQ(document.at("rejected").at(0).at("path"), path("old/a.c"));
  EXPECT_EQ(document.at("rejected").at(0).at("code"), 1);
  EXPECT_EQ(document.at("missing_directories"), json::array({path("none")}));
}

TEST_F(Program, PrintsJsonWhenNothingIsFound) {
  const RunResult run = runProgram({"find", "src", "qv_" + toBytes(L"\xDCFF") + ".c", "--json"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(json::parse(run.out).at("found"), nullptr);
  EXPECT_EQ(json::parse(run.out).at("name"), "qv_\xEF\xBF\xBD.c");
  EXPECT_THAT(run.err, HasSubstr("no source file found for 'qv_" + toBytes(L"\xDCFF") + ".c'"));
}

TEST_F(Program, TracesOnRequest) {
  add("d/a.c");
  RunSettings settings;
  settings.environment = {"QUIVER_DEBUG=1"};
  const RunResult run = runProgram({"find", "src", "a.c", "-d", path("d")}, settings);
  EXPECT_EQ(run.out, path("d/a.c") + "\n");
  EXPECT_THAT(run.err, HasSubstr("QV_2_9::FileSearch::findSrcFile"));
}

}  // namespace
}  // namespace quiver_tool
