// `quiver identify`: real binaries and symbol files, compared with what other tools say of them.

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "program_fixture.h"
#include "run_program.h"
#include "support/file_contents.h"

namespace quiver_tool {
namespace {

using quiver_test::contentOf;

using nlohmann::json;
using testing::HasSubstr;
using testing::Not;

const std::string kMd5OfNew = "22af645d1859cb5ca6da0c484f1f37ea";  // "new"

std::string real(const std::string& name) {
  return QUIVER_REAL_FILES "/" + name;
}

// Another tool's words, in a file.
std::string said(const std::string& name) {
  const std::string text = contentOf(real(name));
  return text.substr(0, text.find_last_not_of(" \r\n") + 1);
}

class Identify : public Program {
 protected:
  static json one(const std::string& path) {
    const RunResult run = runProgram({"identify", "--json", path});
    EXPECT_EQ(run.status, 0) << run.err;
    const json document = json::parse(run.out);
    EXPECT_EQ(document.size(), 1u);
    return document.at(0);
  }
};

TEST_F(Identify, ReadsPeFilesOfBothWidths) {
  const json wide = one(real("tiny64.exe"));
  EXPECT_EQ(wide["format"], "PE32+");
  EXPECT_EQ(wide["guid"], said("tiny64.guid"));
  EXPECT_EQ(wide["age"], 1);
  EXPECT_EQ(wide["symbol_file"], "tiny64.pdb");
  EXPECT_EQ(wide["build_id"], nullptr);
  EXPECT_EQ(wide["size"], contentOf(real("tiny64.exe")).size());
  EXPECT_EQ(one(real("tiny32.exe"))["format"], "PE32");
}

TEST_F(Identify, ShowsTheSameIdentityForBinaryAndSymbolFile) {
  for (const char* name : {"tiny64", "tiny32", "blocks", "repro"}) {
    const json exe = one(real(std::string(name) + ".exe"));
    const json pdb = one(real(std::string(name) + ".pdb"));
    EXPECT_EQ(pdb["format"], "PDB");
    EXPECT_TRUE(exe["guid"].is_string());
    EXPECT_EQ(exe["guid"], pdb["guid"]) << name;
    EXPECT_EQ(exe["age"], pdb["age"]) << name;
  }
  EXPECT_NE(one(real("tiny64.exe"))["guid"], one(real("other/tiny64.exe"))["guid"]);
}

TEST_F(Identify, GivesTheAgeOfTheLinkForARewrittenSymbolFile) {
  EXPECT_EQ(one(real("rewritten.pdb"))["age"], 1);
}

TEST_F(Identify, ReadsElfFiles) {
  const json hello = one(real("hello"));
  const std::string id = said("hello.id");
  EXPECT_EQ(hello["format"], "ELF64");
  EXPECT_EQ(hello["build_id"], id);
  EXPECT_EQ(hello["symbol_file"], "hello.debug");
  EXPECT_EQ(hello["guid"], nullptr);
  EXPECT_EQ(hello["store_key"], ".build-id/" + id.substr(0, 2) + "/" + id.substr(2) + ".debug");
  EXPECT_EQ(one(real("hello.debug"))["build_id"], id);
  EXPECT_EQ(one(real("anonymous"))["build_id"], nullptr);
}

TEST_F(Identify, NamesThePlaceInAStore) {
  std::string digits = said("tiny64.guid");
  std::erase(digits, '-');
  EXPECT_EQ(one(real("tiny64.exe"))["store_key"], "tiny64.pdb/" + digits + "1/tiny64.pdb");
}

TEST_F(Identify, ShowsUnsafeNamesButNoPlaceForThem) {
  const json hostile = one(real("hostile.exe"));
  EXPECT_EQ(hostile["symbol_file"], "..\\..\\..\\evil.pdb");
  EXPECT_EQ(one(real("stream.exe"))["symbol_file"], "C:\\b\\x.pdb:stream");
  EXPECT_EQ(one(real("stream.exe"))["store_key"], nullptr);
}

TEST_F(Identify, TakesAnyFile) {
  const json text = one(add("a.txt", "new"));
  EXPECT_EQ(text["format"], "unknown format");
  EXPECT_EQ(text["md5"], kMd5OfNew);
  EXPECT_EQ(text["size"], 3);
  EXPECT_EQ(one(add("empty"))["size"], 0);
}

TEST_F(Identify, CallsCutFilesDamaged) {
  const std::string pdb = contentOf(real("tiny64.pdb"));
  EXPECT_EQ(one(add("cut.pdb", pdb.substr(0, 100)))["format"], "PDB, damaged");
  const std::string elf = contentOf(real("hello"));
  EXPECT_EQ(one(add("cut", elf.substr(0, 20)))["format"], "ELF, damaged");
  EXPECT_EQ(one(add("cut.exe", "MZ"))["format"], "PE, damaged");
}

TEST_F(Identify, PrintsATableForPeople) {
  const std::string file = add("a.txt", "new");
  const RunResult run = runProgram({"identify", real("hello"), file});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_THAT(run.out, HasSubstr("file "));
  EXPECT_THAT(run.out, HasSubstr("ELF64           build-id " + said("hello.id") + "  hello.debug"));
  EXPECT_THAT(run.out, HasSubstr("-            " + kMd5OfNew + "  3\n"));
}

TEST_F(Identify, GoesOnAfterAFileThatCannotBeRead) {
  const RunResult run = runProgram({"identify", path("none"), path(""), real("hello")});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out, HasSubstr("ELF64"));
  EXPECT_THAT(run.out, Not(HasSubstr("none")));
  EXPECT_THAT(run.err, HasSubstr(path("none") + ": no such file\n"));
  EXPECT_THAT(run.err, HasSubstr(": it is a directory\n"));
}

TEST_F(Identify, SaysInJsonToo) {
  const RunResult run = runProgram({"identify", path("none"), "--json"});
  EXPECT_EQ(run.status, 1);
  const json document = json::parse(run.out);
  EXPECT_EQ(document, json::array({{{"path", path("none")}, {"error", "no such file"}}}));
}

TEST_F(Identify, TakesFilesWithTheNamesOfCommandsAndLists) {
  add("find", "new");
  add("[a,b]", "new");
  add("-x", "new");
  const RunResult run =
      runProgram({"identify", "find", "[a,b]", "--", "-x"}, {path(""), {}, OutputTo::Capture});
  EXPECT_EQ(run.status, 0) << run.err;
  for (const char* name : {"find ", "[a,b] ", "-x "})
    EXPECT_THAT(run.out, HasSubstr(std::string("\n") + name));
}

}  // namespace
}  // namespace quiver_tool
