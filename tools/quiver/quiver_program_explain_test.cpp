// `quiver explain`: the journal of one lookup, for people and as JSON.

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "program_fixture.h"
#include "run_program.h"
#include "support/scoped_environment.h"

namespace quiver_tool {
namespace {

using nlohmann::json;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

constexpr const char* kOtherMd5 = "9e107d9d372bb6826bd81d3542a419d6";

class Explain : public Program {
 protected:
  quiver_test::ScopedVariable m_symbolPath{"_NT_SYMBOL_PATH"};
};

TEST_F(Explain, TellsTheStepsUpToTheFile) {
  const std::string file = add("src/a.c");
  const RunResult run = runProgram({"explain", "src", "/ci/a.c", "-d", path("src") + ",high"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_THAT(run.out,
              AllOf(HasSubstr("step 1, archive directories: no place is configured for it\n"),
                    HasSubstr("    " + file + ": valid, not contradicted\n"),
                    HasSubstr("step 3, the recorded name itself: not tried, the file was found"),
                    HasSubstr("found after "),
                    HasSubstr(": " + file + " (high-priority directories, not contradicted)\n")));
}

TEST_F(Explain, NamesFilesOfOtherSources) {
  const std::string file = add("src/a.c", "x");
  const RunResult run =
      runProgram({"explain", "src", "/ci/a.c", "-d", path("src"), "--md5", kOtherMd5});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out,
              AllOf(HasSubstr(file + ": rejected, it has another checksum\n"),
                    HasSubstr("  - a file of this name with another checksum lies at " + file +
                              ": the binary was built from other sources\n")));
}

TEST_F(Explain, NamesDirectoriesThatDoNotExist) {
  const RunResult run = runProgram({"explain", "src", "a.c", "-d", path("absent")});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out,
              AllOf(HasSubstr("  " + path("absent") + ": does not exist\n"),
                    HasSubstr("  - directory " + path("absent") + " does not exist\n")));
}

TEST_F(Explain, SaysThatNoDirectoryWasGiven) {
  const RunResult run = runProgram({"explain", "src", "qv_absent.c"});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out, HasSubstr("  - no directory was given to search in; --dir names one\n"));
}

TEST_F(Explain, SaysThatNoServerIsConfiguredAndWhatTheBinaryIs) {
  std::filesystem::copy_file(std::filesystem::path(QUIVER_REAL_FILES) / "tiny64.exe",
                             m_tree.path("qv.exe"));
  const RunResult run = runProgram({"explain", "sym", "qv.pdb", "--binary", path("qv.exe")});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out, HasSubstr("  - no symbol server is configured; the binary's identity is "));
  EXPECT_THAT(run.out, Not(HasSubstr("cannot tell")));
}

TEST_F(Explain, SaysWhatAStoreAnswered) {
  const std::string binary = path("qv.exe");
  std::filesystem::copy_file(std::filesystem::path(QUIVER_REAL_FILES) / "tiny64.exe",
                             m_tree.path("qv.exe"));
  std::filesystem::create_directory(m_tree.path("store"));
  const RunResult run = runProgram({"explain",
                                    "sym",
                                    "qv_absent.pdb",
                                    "--binary",
                                    binary,
                                    "--symbol-path",
                                    "srv*" + path("store"),
                                    "--json"});
  const json document = json::parse(run.out);
  const json& places = document["steps"][3]["places"];
  const auto server =
      std::ranges::find_if(places, [](const json& place) { return place.contains("server"); });
  ASSERT_NE(server, places.end()) << run.out;
  EXPECT_EQ((*server)["server"], path("store"));
  EXPECT_EQ((*server)["state"], "missing");
  EXPECT_THAT((*server)["identity"].get<std::string>(), HasSubstr("tiny64.pdb/"));
}

TEST_F(Explain, SaysThatNoServerWasAskedWithoutABinary) {
  const RunResult run = runProgram({"explain",
                                    "sym",
                                    "qv_absent.pdb",
                                    "--binary",
                                    path("absent.exe"),
                                    "--symbol-path",
                                    "srv*" + path("store")});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out,
              AllOf(HasSubstr("  a symbol server: was not asked ("),
                    HasSubstr("  - a symbol server was not asked: ")));
}

TEST_F(Explain, SaysItAsJson) {
  const std::string file = add("src/a.c", "x");
  const RunResult run =
      runProgram({"explain", "src", "/ci/a.c", "-d", path("src"), "--md5", kOtherMd5, "--json"});
  EXPECT_EQ(run.status, 1);
  const json document = json::parse(run.out);
  EXPECT_EQ(document["kind"], "src");
  EXPECT_TRUE(document["found"].is_null());
  ASSERT_EQ(document["steps"].size(), 6u);
  EXPECT_EQ(document["steps"][4]["reason"], "the binary is not known; --binary names it");
  const json& place = document["steps"][5]["places"][0];
  EXPECT_EQ(place["directory"], path("src"));
  EXPECT_EQ(place["state"], "searched");
  EXPECT_EQ(place["candidates"][0]["path"], file);
  EXPECT_EQ(place["candidates"][0]["outcome"], "invalid");
  EXPECT_EQ(place["candidates"][0]["code"], 1);
  EXPECT_EQ(document["advice"].size(), 1u);
}

TEST_F(Explain, TellsWhatBecameOfASuggestion) {
  const std::string file = add("there/a.c");
  const RunResult run = runProgram({"explain", "src", "a.c", "--suggest", file});
  EXPECT_EQ(run.status, 0);
  EXPECT_THAT(run.out, HasSubstr("suggested paths:\n  " + file + ": valid, not contradicted\n"));
}

TEST_F(Explain, NeedsAKindOfFile) {
  EXPECT_EQ(runProgram({"explain"}).status, 2);
  EXPECT_THAT(runProgram({"explain", "lib", "a"}).err,
              HasSubstr("'lib' is no kind of file; the kinds are 'bin', 'sym', 'src'\n"
                        "Try 'quiver explain --help'."));
  EXPECT_EQ(runProgram({"explain", "src"}).status, 2);
}

TEST_F(Explain, SaysWhatBecameOfTheCopy) {
  const std::string file = add("src/a.c");
  add("r/keep");
  const std::vector<std::string> arguments = {
      "explain", "src", "a.c", "-d", path("src"), "--result", path("r"), "--archive-found"};
  EXPECT_EQ(runProgram(arguments).err, "quiver: " + file + ": archived (code 0)\n");
  std::vector<std::string> asJson = arguments;
  asJson.push_back("--json");
  const json document = json::parse(runProgram(asJson).out);
  EXPECT_EQ(document["archived"], json({{"code", 6}, {"code_text", "already in the archive"}}));
}

TEST_F(Explain, SaysThatACopyCouldNotBeMade) {
  const std::string file = add("src/a.c");
  add("r/archive", "no directory");
  const RunResult run = runProgram(
      {"explain", "src", "a.c", "-d", path("src"), "--result", path("r"), "--archive-found"});
  EXPECT_EQ(run.status, 0);
  EXPECT_THAT(run.err, HasSubstr(file + ": not archived, "));
  EXPECT_TRUE(
      json::parse(runProgram({"explain", "src", "a.c", "--json"}).out)["archived"].is_null());
}

TEST_F(Explain, NamesDirectoriesThatServeAnotherKind) {
  add("src/a.c");
  const RunResult run = runProgram({"explain",
                                    "src",
                                    "a.c",
                                    "-d",
                                    "sym:" + path("src"),
                                    "-d",
                                    "bin:" + path("bin"),
                                    "-d",
                                    "all:" + path("all")});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out,
              AllOf(HasSubstr("  - directory " + path("src") + " serves symbol files only\n"),
                    HasSubstr("  - directory " + path("bin") + " serves binaries only\n"),
                    Not(HasSubstr(path("all") + " serves"))));
}

TEST_F(Explain, SaysThatServersAreTurnedOff) {
  const std::vector<std::string> withoutServer = {"explain", "sym", "a.pdb", "--no-servers"};
  EXPECT_THAT(runProgram(withoutServer).out, HasSubstr("  - no symbol server is configured; "));
  const std::string off = "  - symbol servers are turned off (--no-servers); ";
  for (const std::vector<std::string>& place :
       {std::vector<std::string>{"--symbol-path", "srv*" + path("store")},
        std::vector<std::string>{"-d", "srv*" + path("store")}}) {
    std::vector<std::string> arguments = withoutServer;
    arguments.insert(arguments.end(), place.begin(), place.end());
    EXPECT_THAT(runProgram(arguments).out, HasSubstr(off)) << place.front();
  }
  RunSettings settings;
  settings.environment = {"_NT_SYMBOL_PATH=srv*" + path("store")};
  EXPECT_THAT(runProgram(withoutServer, settings).out, HasSubstr(off));
}

TEST_F(Explain, SaysThatABinaryShowsNoIdentity) {
  const std::string binary = add("app", "no binary at all");
  EXPECT_THAT(runProgram({"explain", "sym", "a.pdb", "--binary", binary}).out,
              HasSubstr("; the binary " + binary + " shows no identity\n"));
}

}  // namespace
}  // namespace quiver_tool
