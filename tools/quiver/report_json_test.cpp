// The JSON form, read back with the parser that wrote it and checked for being text.

#include <nlohmann/json.hpp>
#include <string>

#include <gtest/gtest.h>

#include "report.h"

namespace quiver_tool {
namespace {

using nlohmann::json;

FindOptions optionsFor(const wchar_t* name) {
  FindOptions options;
  options.category = QV_2_9::scSourceFiles;
  options.name = name;
  options.isJson = true;
  return options;
}

TEST(ReportJson, HoldsEverythingOfAFoundFile) {
  Outcome outcome;
  outcome.found = FoundFile{L"/s/a.c", 2, 0};
  outcome.candidates = {*outcome.found, FoundFile{L"/t/a.c", 6, 1}};
  outcome.rejected = {{L"/r/a.c", 2, 1, L"%ChecksumMismatch"}};
  outcome.unusable = {{L"/none"}, {L"/closed"}};
  outcome.archived = QV_2_9::arAlreadyArchived;
  const json expected = json::parse(R"({
    "kind": "src",
    "name": "a.c",
    "found": {"path": "/s/a.c", "step": 2, "step_text": "high-priority directories",
              "confidence": 0, "confidence_text": "confirmed"},
    "candidates": [
      {"path": "/s/a.c", "step": 2, "step_text": "high-priority directories",
       "confidence": 0, "confidence_text": "confirmed"},
      {"path": "/t/a.c", "step": 6, "step_text": "low-priority directories",
       "confidence": 1, "confidence_text": "not contradicted"}],
    "rejected": [
      {"path": "/r/a.c", "step": 2, "step_text": "high-priority directories",
       "code": 1, "code_text": "the source differs",
       "message": "%ChecksumMismatch", "reason": "has another checksum"}],
    "missing_directories": ["/none"],
    "unreadable_directories": ["/closed"],
    "archived": {"code": 6, "code_text": "already in the archive"},
    "message": null})");
  EXPECT_EQ(json::parse(toJson(optionsFor(L"a.c"), outcome)), expected);
}

TEST(ReportJson, IsWholeWhenNothingWasFound) {
  const json document = json::parse(toJson(optionsFor(L"a.c"), Outcome()));
  EXPECT_EQ(document.at("found"), nullptr);
  EXPECT_EQ(document.at("candidates"), json::array());
  EXPECT_EQ(document.at("rejected"), json::array());
  EXPECT_EQ(document.at("missing_directories"), json::array());
  EXPECT_EQ(document.at("unreadable_directories"), json::array());
  EXPECT_EQ(document.at("archived"), nullptr);
  EXPECT_EQ(document.at("message"),
            "no source file found for 'a.c': no candidate existed in any place searched");
}

TEST(ReportJson, ReplacesBytesThatAreNoText) {
  const json document = json::parse(toJson(optionsFor(L"a\xDCFF.c"), Outcome()));
  EXPECT_EQ(document.at("name"), "a\xEF\xBF\xBD.c");
}

TEST(Report, PrintsTheDocumentAndTheSentence) {
  const Report report = makeReport(optionsFor(L"a.c"), Outcome());
  EXPECT_TRUE(json::accept(report.out));
  EXPECT_EQ(report.err,
            "quiver: no source file found for 'a.c': no candidate existed in any place searched\n");
}

}  // namespace
}  // namespace quiver_tool
