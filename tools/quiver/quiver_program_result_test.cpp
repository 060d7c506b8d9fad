// Lookups that know a result directory, its archive and its parents.

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "program_fixture.h"
#include "run_program.h"

namespace quiver_tool {
namespace {

using nlohmann::json;
using testing::HasSubstr;

constexpr const char* kMd5OfNew = "22af645d1859cb5ca6da0c484f1f37ea";  // "new"
constexpr const char* kMd5OfOld = "149603e6c03516362a8da23f624db945";  // "old"

class ProgramWithResults : public Program {
 protected:
  std::string archived(const std::string& result, const char* md5) const {
    return path(result + "/archive/sources/a.c/" + md5 + "/a.c");
  }
};

TEST_F(ProgramWithResults, SearchesTheFoldersOfTheResult) {
  const std::string file = add("r/sources/deep/a.c");
  const RunResult run = runProgram({"find", "src", "/x/a.c", "--result", path("r"), "-v"});
  EXPECT_EQ(run.out, file + "\n");
  EXPECT_THAT(run.err, HasSubstr("step 2, high-priority directories"));
}

TEST_F(ProgramWithResults, PrefersTheResultThenGivenDirectoriesThenTheParentsInOrder) {
  add("two/binaries/qv_a", "2");
  const std::vector<std::string> expected = {add("r/binaries/qv_a", "r"),
                                             add("given/qv_a", "g"),
                                             add("one/binaries/qv_a", "1"),
                                             path("two/binaries/qv_a")};
  const std::vector<std::string> arguments = {"find",
                                              "bin",
                                              "qv_a",
                                              "--parent",
                                              path("one"),
                                              "--parent",
                                              path("two"),
                                              "-d",
                                              path("given") + ",high",
                                              "--result",
                                              path("r")};
  for (const std::string& file : expected) {
    EXPECT_EQ(runProgram(arguments).out, file + "\n");
    std::filesystem::remove(file);
  }
  EXPECT_EQ(runProgram(arguments).status, 1);
}

TEST_F(ProgramWithResults, SearchesTheArchiveOfTheResultBeforeOtherArchives) {
  const std::string other = add("other/a.c/x/a.c", "other");
  const std::string own = add("r/archive/sources/a.c/x/a.c", "own");
  const std::vector<std::string> arguments = {
      "find", "src", "a.c", "--archive", path("other"), "--result", path("r"), "--all"};
  EXPECT_EQ(runProgram(arguments).out, own + "\n" + other + "\n");
}

TEST_F(ProgramWithResults, ArchivesTheAnswerAndFindsItThereAfterwards) {
  const std::string file = add("src/a.c", "new");
  add("r/note");
  std::vector<std::string> arguments = {
      "find", "src", "/x/a.c", "-d", path("src"), "--result", path("r"), "--archive-found"};
  const RunResult first = runProgram(arguments);
  EXPECT_EQ(first.status, 0);
  EXPECT_EQ(first.out, file + "\n");
  EXPECT_EQ(first.err, "quiver: " + file + ": archived (code 0)\n");

  std::filesystem::remove(file);
  arguments.push_back("-v");
  const RunResult second = runProgram(arguments);
  const std::string copy = archived("r", kMd5OfNew);
  EXPECT_EQ(second.out, copy + "\n");
  EXPECT_EQ(second.err,
            "quiver: " + copy +
                ": found (step 1, archive directories; confidence 1, not contradicted)\n"
                "quiver: " +
                copy + ": already in the archive (code 6)\n");
}

TEST_F(ProgramWithResults, ArchivesOnlyOnRequest) {
  add("src/a.c");
  add("r/note");
  EXPECT_EQ(runProgram({"find", "src", "a.c", "-d", path("src"), "--result", path("r")}).err, "");
  EXPECT_FALSE(std::filesystem::exists(path("r/archive")));
}

TEST_F(ProgramWithResults, ArchivesIntoTheFirstParentWhenThereIsNoResult) {
  add("src/a.c", "new");
  add("one/note");
  add("two/note");
  const RunResult run = runProgram({"find",
                                    "src",
                                    "a.c",
                                    "-d",
                                    path("src"),
                                    "--parent",
                                    path("one"),
                                    "--parent",
                                    path("two"),
                                    "--archive-found"});
  EXPECT_EQ(run.status, 0);
  EXPECT_TRUE(std::filesystem::exists(archived("one", kMd5OfNew)));
  EXPECT_FALSE(std::filesystem::exists(path("two/archive")));
}

TEST_F(ProgramWithResults, ArchivesTheAnswerOnlyAlsoWithAllCandidates) {
  add("one/a.c", "new");
  add("two/a.c", "old");
  add("r/note");
  runProgram({"find",
              "src",
              "a.c",
              "-d",
              path("one"),
              "-d",
              path("two"),
              "--all",
              "--result",
              path("r"),
              "--archive-found"});
  EXPECT_TRUE(std::filesystem::exists(archived("r", kMd5OfNew)));
  EXPECT_FALSE(std::filesystem::exists(archived("r", kMd5OfOld)));
}

TEST_F(ProgramWithResults, SaysWhyTheAnswerWasNotArchived) {
  const std::string file = add("src/a.c", "new");
  const RunResult run = runProgram(
      {"find", "src", "a.c", "-d", path("src"), "--result", path("none"), "--archive-found"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, file + "\n");
  EXPECT_EQ(
      run.err,
      "quiver: " + file + ": not archived, a folder of the archive cannot be made (code 4)\n");
}

TEST_F(ProgramWithResults, HasTheArchiveCodeInTheDocument) {
  add("src/a.c", "new");
  add("r/note");
  const RunResult run = runProgram({"find",
                                    "src",
                                    "a.c",
                                    "-d",
                                    path("src"),
                                    "--result",
                                    path("r"),
                                    "--archive-found",
                                    "--json"});
  EXPECT_EQ(json::parse(run.out).at("archived"),
            json::parse(R"({"code": 0, "code_text": "archived"})"));
}

TEST_F(ProgramWithResults, NamesResultDirectoriesThatDoNotExist) {
  const RunResult run =
      runProgram({"find", "src", "a.c", "--result", path("none"), "--parent", path("gone")});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err,
            "quiver: no source file found for 'a.c': no candidate existed in any place searched; "
            "no such directory: " +
                path("none") + ", " + path("gone") + "\n");
}

TEST_F(ProgramWithResults, SearchesAllParentsWhenADirectoryIsNamedTwice) {
  const std::string file = add("p/a.c");
  const RunResult run = runProgram({"find",
                                    "src",
                                    "a.c",
                                    "--result",
                                    path("r"),
                                    "--parent",
                                    path("p"),
                                    "--parent",
                                    path("r") + "/../r"});
  EXPECT_EQ(run.out, file + "\n");
}

}  // namespace
}  // namespace quiver_tool
