// `quiver resolve` as a user runs it.

#include <filesystem>
#include <fstream>
#include <iterator>
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

class ProgramResolving : public Program {
 protected:
  /// Writes a manifest of one module with these sources.
  std::string manifestOf(const json& sources) {
    return add("m.json",
               json{{"modules", {{{"path", "/ci/out/app"}, {"sources", sources}}}}}.dump());
  }

  static json source(const std::string& name, const char* md5) {
    return {{"path", name}, {"md5", md5}};
  }

  RunResult resolve(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), "resolve");
    arguments.push_back("--no-servers");
    return runProgram(arguments);
  }

  static json documentOf(const RunResult& run) { return json::parse(run.out); }

  static std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }
};

TEST_F(ProgramResolving, FindsEveryKindByDifferentSteps) {
  const std::string app = add("bin/app", "new");
  const std::string symbols = add("bin/app.debug", "old");
  const std::string high = add("high/a.c", "new");
  const std::string low = add("low/deep/b.c", "old");
  const std::string recorded = add("recorded/c.c", "new");
  const json module = {
      {"path", "/ci/out/app"},
      {"md5", kMd5OfNew},
      {"symbol_file", source("/ci/out/app.debug", kMd5OfOld)},
      {"sources",
       {source("/ci/a.c", kMd5OfNew), source("/ci/b.c", kMd5OfOld), source(recorded, kMd5OfNew)}}};
  const std::string manifest = add("m.json", json{{"modules", {module}}}.dump());
  const RunResult run = resolve({manifest,
                                 "-d",
                                 "bin:" + path("bin"),
                                 "-d",
                                 path("high") + ",high",
                                 "-d",
                                 "src:" + path("low") + ",recursive",
                                 "--json"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err, "");
  const json files = documentOf(run).at("files");
  ASSERT_EQ(files.size(), 5u);
  const std::vector<std::string> paths = {app, symbols, high, low, recorded};
  const std::vector<int> steps = {6, 5, 2, 6, 3};
  for (std::size_t i = 0; i < files.size(); ++i) {
    EXPECT_EQ(files[i].at("path"), paths[i]);
    EXPECT_EQ(files[i].at("step"), steps[i]) << files[i];
    EXPECT_EQ(files[i].at("confidence"), 0);
    EXPECT_EQ(files[i].at("module"), i == 0 ? json() : json("/ci/out/app"));
  }
}

TEST_F(ProgramResolving, PrintsATableAndSaysOnRequestWhatIsMissing) {
  add("co/a.c", "new");
  const std::string other = add("co/b.c", "old");
  const std::string manifest =
      manifestOf({source("/ci/a.c", kMd5OfNew), source("/ci/b.c", kMd5OfNew)});
  const RunResult run = resolve({manifest, "-d", path("co"), "-d", path("gone"), "-v"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out,
            "binaries                    0 of 1  found\n"
            "  no file of this name      1       not found\n"
            "sources                     1 of 2  found\n"
            "  low-priority directories  1       confirmed\n"
            "  only with other content   1       not found\n");
  EXPECT_EQ(run.err,
            "quiver: /ci/out/app: not found: no candidate existed in any place searched\n"
            "quiver: /ci/b.c: not found: " +
                other + " has another checksum\nquiver: " + path("gone") + ": no such directory\n");
}

TEST_F(ProgramResolving, TakesASourceByTimeAndSizeWhenNoMd5IsRecorded) {
  add("co/a.c", "new");
  const std::string manifest = manifestOf({{{"path", "/ci/a.c"}, {"size", 3}},
                                           {{"path", "/ci/a.c"}, {"size", 4}},
                                           {{"path", "/ci/a.c"}, {"size", 3}, {"time", 1000}}});
  const json files = documentOf(resolve({manifest, "-d", path("co"), "--json"})).at("files");
  EXPECT_EQ(files[1].at("state"), "found");
  EXPECT_EQ(files[2].at("reason"), "other-content");
  EXPECT_EQ(files[3].at("reason"), "other-content");
}

TEST_F(ProgramResolving, TriesMappedPathsFirst) {
  const std::string file = add("co/src/a.c", "new");
  add("other/a.c", "new");
  const std::string manifest = manifestOf(json::array({source("/ci/src/a.c", kMd5OfNew)}));
  const RunResult run = resolve(
      {manifest, "-d", path("other") + ",high", "--map", "/ci=" + path("co"), "--learn", "--json"});
  const json document = documentOf(run);
  EXPECT_EQ(document.at("files")[1].at("path"), file);
  EXPECT_EQ(document.at("files")[1].at("step"), 7);
  EXPECT_EQ(document.at("mappings"),
            json::array(
                {{{"from", "/ci"}, {"to", path("co")}, {"learned", false}, {"confirmations", 1}}}));
}

TEST_F(ProgramResolving, TakesNothingWithOtherContentFromAWrongMapping) {
  add("wrong/a.c", "old");
  const std::string right = add("right/a.c", "new");
  const std::string manifest = manifestOf(json::array({source("/ci/a.c", kMd5OfNew)}));
  const RunResult run =
      resolve({manifest, "--map", "/ci=" + path("wrong"), "-d", path("right"), "--json"});
  EXPECT_EQ(documentOf(run).at("files")[1].at("path"), right);
}

TEST_F(ProgramResolving, LearnsWhereACheckoutLies) {
  json sources = json::array();
  for (const char* name : {"one/a.c", "one/b.c", "two/c.c"}) {
    add(std::string("co/") + name, "new");
    sources.push_back(source(std::string("/ci/work/") + name, kMd5OfNew));
  }
  const std::string manifest = manifestOf(sources);
  const std::string tree = path("co") + ",recursive";
  const json plain = documentOf(resolve({manifest, "-d", tree, "--json"}));
  const json learned = documentOf(resolve({manifest, "-d", tree, "--json", "--learn"}));
  const auto stepOf = [](const json& document, std::size_t file) {
    return document.at("files").at(file).at("step").get<int>();
  };
  EXPECT_EQ(stepOf(plain, 3), 6);
  EXPECT_EQ(plain.at("mappings"), json::array());
  EXPECT_EQ(stepOf(learned, 1), 6);
  EXPECT_EQ(stepOf(learned, 2), 7);
  EXPECT_EQ(stepOf(learned, 3), 7);
  EXPECT_EQ(learned.at("mappings")[0].at("from"), "/ci/work");
  EXPECT_EQ(learned.at("mappings")[0].at("to"), path("co"));
  EXPECT_EQ(learned.at("mappings")[0].at("confirmations"), 2);
}

TEST_F(ProgramResolving, SearchesAndFillsTheResultOfADirectory) {
  add("r/manifest.json", contentOf(manifestOf(json::array({source("/ci/a.c", kMd5OfNew)}))));
  const std::string file = add("r/sources/a.c", "new");
  const RunResult run = resolve({path("r"), "--archive-found", "--json"});
  const json answer = documentOf(run).at("files")[1];
  EXPECT_EQ(answer.at("path"), file);
  EXPECT_EQ(answer.at("archived"), 0);
  EXPECT_TRUE(std::filesystem::exists(
      toNativePath(toWide(path(std::string("r/archive/sources/a.c/") + kMd5OfNew + "/a.c")))));
}

TEST_F(ProgramResolving, LooksIntoArchivesForEveryKind) {
  const std::string file = add("kept/a.c/x/a.c", "new");
  const std::string manifest = manifestOf(json::array({source("/ci/a.c", kMd5OfNew)}));
  const RunResult run = resolve({manifest, "--archive", path("kept"), "--json"});
  EXPECT_EQ(documentOf(run).at("files")[1].at("path"), file);
  EXPECT_EQ(documentOf(run).at("files")[1].at("step"), 1);
}

TEST_F(ProgramResolving, WritesAReportWithJournals) {
  add("co/a.c", "old");
  const std::string manifest = manifestOf(json::array({source("/ci/a.c", kMd5OfNew)}));
  const RunResult run = resolve({manifest, "-d", path("co"), "--report", path("r.html")});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, "");
  const std::string page = contentOf(path("r.html"));
  EXPECT_THAT(page, HasSubstr("has another checksum"));
  EXPECT_TRUE(page.ends_with("</html>\n"));
}

TEST_F(ProgramResolving, SaysBeforeTheLookupsThatTheReportCannotBeWritten) {
  const std::string manifest = manifestOf(json::array());
  const RunResult run = resolve({manifest, "--report", path("none/r.html")});
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.out, "");
  EXPECT_THAT(run.err, HasSubstr("cannot write the report " + path("none/r.html")));
}

TEST_F(ProgramResolving, WritesNoReportOverItsManifest) {
  const std::string manifest = manifestOf(json::array());
  const std::string before = contentOf(manifest);
  const RunResult run = resolve({manifest, "--report", manifest});
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.err, "quiver: cannot write the report " + manifest + ": it is the manifest\n");
  EXPECT_EQ(contentOf(manifest), before);
}

TEST_F(ProgramResolving, RefusesManifestsThatAreNone) {
  for (const char* text : {"",
                           "{",
                           "[]",
                           R"({"modules": 5})",
                           R"({"modules": [{}]})",
                           R"({"modules": [{"path": 5}]})"}) {
    const RunResult run = resolve({add("bad.json", text)});
    EXPECT_EQ(run.status, 2) << text;
    EXPECT_EQ(run.out, "");
    EXPECT_THAT(run.err, testing::StartsWith("quiver: " + path("bad.json") + ": "));
    EXPECT_EQ(run.err.find('\n'), run.err.size() - 1) << run.err;
  }
  EXPECT_EQ(resolve({path("none.json")}).status, 2);
}

TEST_F(ProgramResolving, IsContentWithAnEmptyManifest) {
  const RunResult run = resolve({manifestOf(json::array()), "--map", "/ci=" + path("co")});
  EXPECT_EQ(run.status, 1) << "the module itself is missing";
  EXPECT_EQ(resolve({add("empty.json", R"({"modules": []})")}).status, 0);
}

TEST_F(ProgramResolving, RefusesWrongOptions) {
  const std::string manifest = manifestOf(json::array());
  for (const char* rule : {"/ci", "=/home", "/ci="}) {
    const RunResult run = resolve({manifest, "--map", rule});
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.err, HasSubstr(std::string("--map: '") + rule + "' is not FROM=TO"));
  }
  EXPECT_THAT(resolve({manifest, "--archive-found"}).err,
              HasSubstr("--archive-found needs a result directory: DIR, --result or --parent"));
}

TEST_F(ProgramResolving, NamesADirectoryOfAMappingThatDoesNotExist) {
  const std::string manifest = manifestOf(json::array());
  const std::vector<std::string> arguments = {manifest, "--map", "/ci=" + path("gone"), "--json"};
  const RunResult run = resolve(arguments);
  EXPECT_EQ(run.err, "quiver: " + path("gone") + ": no such directory\n");
  EXPECT_EQ(documentOf(run).at("missing_directories"), json::array({path("gone")}));
}

TEST_F(ProgramResolving, WritesNoReportOverAFileThatIsRecorded) {
  const std::string recorded = add("recorded/a.c", "old");
  const std::string manifest = manifestOf(json::array({source(recorded, kMd5OfNew)}));
  const RunResult run = resolve({manifest, "--report", path("recorded/../recorded/a.c")});
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.out, "") << "said before the lookups";
  EXPECT_THAT(run.err, testing::EndsWith(": it is a file that the manifest records\n"));
  EXPECT_EQ(contentOf(recorded), "old");
}

TEST_F(ProgramResolving, WritesNoReportOverAFileThatItFound) {
  const std::string file = add("co/a.c", "new");
  const std::string manifest = manifestOf(json::array({source("/ci/a.c", kMd5OfNew)}));
  const RunResult run = resolve({manifest, "-d", path("co"), "--report", file});
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.err,
            "quiver: cannot write the report " + file + ": it is the file found for /ci/a.c\n");
  EXPECT_THAT(run.out, HasSubstr("sources                     1 of 1  found\n"));
  EXPECT_EQ(contentOf(file), "new");
}

}  // namespace
}  // namespace quiver_tool
