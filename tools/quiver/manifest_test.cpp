// Tests of manifest_reader.h and manifest_writer.h.

#include <ostream>
#include <string>

#include <gtest/gtest.h>

#include "manifest_reader.h"
#include "manifest_writer.h"
#include "support/temp_tree.h"

namespace quiver_tool {
namespace {

std::string complaintAbout(std::string_view text) {
  try {
    parseManifest(text);
  } catch (const ManifestError& error) {
    return error.what();
  }
  return "(none)";
}

std::string repeated(const std::string& text, int times) {
  std::string all;
  for (int i = 0; i < times; ++i) all += text;
  return all;
}

constexpr const char* kWhole = R"({
 "version": 1,
 "operating_system": "windows",
 "modules": [
  {
   "path": "C:\\ci\\app.exe",
   "md5": "22af645d1859cb5ca6da0c484f1f37ea",
   "size": 9223372036854775807,
   "time": -1,
   "symbol_file": {
    "path": "C:\\ci\\app.pdb"
   },
   "sources": [
    {
     "path": "C:\\ci\\ä.cpp",
     "size": 0
    }
   ]
  }
 ]
}
)";

TEST(ManifestReader, ReadsEverything) {
  const Manifest manifest = parseManifest(kWhole);
  EXPECT_EQ(manifest.osType, 1);
  ASSERT_EQ(manifest.modules.size(), 1u);
  const ManifestModule& module = manifest.modules[0];
  EXPECT_EQ(module.binary.path, L"C:\\ci\\app.exe");
  EXPECT_EQ(module.binary.md5, L"22af645d1859cb5ca6da0c484f1f37ea");
  EXPECT_EQ(module.binary.size, 9223372036854775807);
  EXPECT_EQ(module.binary.time, -1);
  ASSERT_TRUE(module.symbolFile);
  EXPECT_EQ(module.symbolFile->path, L"C:\\ci\\app.pdb");
  EXPECT_FALSE(module.symbolFile->md5);
  ASSERT_EQ(module.sources.size(), 1u);
  EXPECT_EQ(module.sources[0].path, L"C:\\ci\\\u00e4.cpp");
  EXPECT_EQ(module.sources[0].size, 0);
  EXPECT_FALSE(module.sources[0].time);
}

TEST(ManifestReader, NeedsLittleAndIgnoresWhatItDoesNotKnow) {
  const Manifest manifest =
      parseManifest(R"({"modules":[{"path":"/a","colour":[1,{}]}],"note":null})");
  EXPECT_FALSE(manifest.osType);
  ASSERT_EQ(manifest.modules.size(), 1u);
  EXPECT_FALSE(manifest.modules[0].symbolFile);
  EXPECT_TRUE(manifest.modules[0].sources.empty());
  EXPECT_TRUE(parseManifest(R"({"modules":[]})").modules.empty());
}

TEST(ManifestWriter, WritesWhatIsRead) {
  EXPECT_EQ(manifestText(parseManifest(kWhole)), kWhole);
}

TEST(ManifestWriter, WritesUtf8WhateverAPathHolds) {
  Manifest manifest;
  manifest.modules.push_back({{L"/a\xDC80", {}, {}, {}}, {}, {}});
  EXPECT_EQ(parseManifest(manifestText(manifest)).modules[0].binary.path, L"/a\uFFFD");
}

struct BadRow {
  const char* name;
  std::string text;
  const char* complaint;
};

void PrintTo(const BadRow& row, std::ostream* out) {
  *out << row.name;
}

const BadRow kBad[] = {
    {"Empty",
     "",
     "line 1, column 1: syntax error while parsing value - unexpected end of input; expected '[', "
     "'{', or a literal"},
    {"Truncated",
     "{\"modules\": [\n  {\"path\": \"/a\"",
     "line 2, column 16 (/modules/0/path): syntax error while parsing object - unexpected end of "
     "input; expected '}'"},
    {"TextThatGoesOn",
     "{\"modules\": [{\"path\": \"/a",
     "line 1, column 26 (/modules/0/path): syntax error while parsing value - invalid string: "
     "missing closing quote"},
    {"InvalidUtf8",
     "{\"modules\": [{\"path\": \"/\xC3(\"}]}",
     "line 1, column 26 (/modules/0/path): syntax error while parsing value - invalid string: "
     "ill-formed UTF-8 byte"},
    {"TwoDocuments",
     "{\"modules\": []} {}",
     "line 1, column 17: syntax error while parsing value - unexpected '{'; expected end of input"},
    {"NulBehindTheDocument",
     std::string("{\"modules\": []}\0{", 17),
     "line 1, column 16: a NUL stands behind the document"},
    {"NumberBeyondEverything",
     "{\"modules\": [{\"path\": \"/a\", \"size\": " + std::string(400, '9') + "}]}",
     "line 1, column 37 (/modules/0/size): this number is beyond everything"},
    {"NoObject", " []", "line 1, column 2: a manifest is an object, not array"},
    {"NoModules", "{}", "line 1, column 1: \"modules\" is missing"},
    {"ModulesOfAnotherType",
     "{\"modules\": 3}",
     "line 1, column 13 (/modules): an array is needed, not number"},
    {"ModuleOfAnotherType",
     "{\"modules\": [\n 7, []]}",
     "line 2, column 2 (/modules/0): a file is an object, not number"},
    {"NoPath",
     "{\"modules\": [{\"path\": \"/a\"},\n {}]}",
     "line 2, column 2 (/modules/1): \"path\" is missing"},
    {"EmptyPath",
     "{\"modules\": [{\"path\": \"\"}]}",
     "line 1, column 23 (/modules/0/path): a path is not empty"},
    {"PathWithNul",
     "{\"modules\": [{\"path\": \"/a\\u0000b\"}]}",
     "line 1, column 23 (/modules/0/path): a path holds no NUL"},
    {"LongPath",
     "{\"modules\": [{\"path\": \"" + std::string(32768, 'a') + "\"}]}",
     "line 1, column 23 (/modules/0/path): a path has at most 32767 bytes"},
    {"ShortMd5",
     "{\"modules\": [{\"path\": \"/a\", \"md5\": \"22af\"}]}",
     "line 1, column 36 (/modules/0/md5): an MD5 has 32 hexadecimal digits"},
    {"SizeBelowNothing",
     "{\"modules\": [{\"path\": \"/a\", \"size\": -1}]}",
     "line 1, column 37 (/modules/0/size): a whole number from 0 to 9223372036854775807 is needed"},
    {"SizeBeyondEverything",
     "{\"modules\": [{\"path\": \"/\u00e4\", \"size\": 18446744073709551615}]}",
     "line 1, column 37 (/modules/0/size): a whole number from 0 to 9223372036854775807 is needed"},
    {"SizeOfAnotherType",
     "{\"modules\": [{\"path\": \"/a\", \"size\": 1e3}]}",
     "line 1, column 37 (/modules/0/size): a whole number from 0 to 9223372036854775807 is needed"},
    {"SourceOfAnotherType",
     "{\"modules\": [{\"size\": 1, \"path\": \"/a\", \"sources\": [{\"path\": \"/b\"}, \"/c\"]}]}",
     "line 1, column 68 (/modules/0/sources/1): a file is an object, not string"},
    {"DuplicateModule",
     "{\"modules\": [{\"path\": \"/a\"},\n{\"path\": \"/a\"}]}",
     "line 2, column 10 (/modules/1/path): this module is there already, as /modules/0"},
    {"KeyTwice",
     "{\"modules\": [{\"path\": \"/a\",\n \"md5\": \"\", \"path\": \"/b\"}]}",
     "line 2, column 13 (/modules/0/path): this key is there already"},
    {"KeyTwiceInDisguise",
     "{\"modules\": [], \"m\\u006fdules\": []}",
     "line 1, column 17 (/modules): this key is there already"},
    {"KeyTwiceBehindAnObject",
     "{\"modules\": [{\"sources\": [{\"path\": \"/b\"}], \"path\": \"/a\",\n\"sources\":[]}]}",
     "line 2, column 1 (/modules/0/sources): this key is there already"},
    {"KeyTwiceWhereNobodyLooks",
     "{\"modules\": [], \"x\": {\"y\": 1, \"y\": 1}}",
     "line 1, column 31 (/x/y): this key is there already"},
    {"OtherVersion",
     "{\"version\": 2, \"modules\": []}",
     "line 1, column 13 (/version): this program reads version 1 only"},
    {"OtherSystem",
     "{\"operating_system\": \"dos\", \"modules\": []}",
     "line 1, column 22 (/operating_system): either \"windows\" or \"other\" is needed"},
};

class BadManifest : public testing::TestWithParam<BadRow> {};

TEST_P(BadManifest, IsRefusedInOneLineWithThePlace) {
  EXPECT_EQ(complaintAbout(GetParam().text), GetParam().complaint);
}

INSTANTIATE_TEST_SUITE_P(Rows, BadManifest, testing::ValuesIn(kBad), [](const auto& row) {
  return std::string(row.param.name);
});

TEST(ManifestReader, SurvivesEveryCut) {
  const std::string whole = kWhole;
  for (std::size_t size = 0; size + 2 < whole.size(); ++size) {
    const std::string complaint = complaintAbout(whole.substr(0, size));
    EXPECT_TRUE(complaint.starts_with("line ")) << complaint;
    EXPECT_EQ(complaint.find('\n'), std::string::npos) << complaint;
  }
}

TEST(ManifestReader, SurvivesEveryChangedByte) {
  const std::string whole = kWhole;
  for (std::size_t at = 0; at < whole.size(); ++at) {
    for (const char c : {'\0', '"', '{', ']', '\xFF', '9', 'x'}) {
      std::string text = whole;
      text[at] = c;
      EXPECT_EQ(fuzzManifest(text), 0);
    }
  }
}

TEST(ManifestReader, RefusesDeepNesting) {
  const std::string open(10'000'000, '[');
  EXPECT_EQ(complaintAbout("{\"modules\":[],\"x\":" + open),
            "line 1, column 118 (/x" + repeated("/0", 99) + "): there are more than 100 levels");
  const std::string allowed(99, '[');
  EXPECT_EQ(complaintAbout("{\"modules\":[],\"x\":" + allowed + std::string(99, ']') + "}"),
            "(none)");
}

TEST(ManifestReader, RefusesMillionsOfValues) {
  const std::string many = "{\"modules\":[],\"x\":[" + repeated("0,", 3'999'997);
  EXPECT_EQ(complaintAbout(many + "0]}").substr(0, 19), "line 1, column 8000") << "one too many";
  EXPECT_EQ(complaintAbout(many.substr(0, many.size() - 1) + "]}"), "(none)");
}

TEST(ManifestReader, ReadsFiles) {
  quiver_test::TempTree files;
  EXPECT_EQ(readManifest(files.addFile("m.json", kWhole)).modules.size(), 1u);
  EXPECT_THROW(readManifest(files.path("none.json")), ManifestError);
  EXPECT_THROW(readManifest(files.addSparseFile("huge.json", kMostManifestBytes + 1)),
               ManifestError);
}

}  // namespace
}  // namespace quiver_tool
