// The model of a resolution: reasons, counts, the document and the page.

#include <nlohmann/json.hpp>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "resolution_json.h"
#include "resolution_summary.h"
#include "resolve_report.h"

namespace quiver_tool {
namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::Not;

ResolvedFile fileOf(QV_2_9::search_category_t category, const wchar_t* name) {
  ResolvedFile file;
  file.recorded.category = category;
  file.recorded.name = name;
  return file;
}

ResolvedFile foundBy(std::int32_t step, std::int32_t confidence) {
  ResolvedFile file = fileOf(QV_2_9::scSourceFiles, L"/ci/a.c");
  file.state = FileState::Found;
  file.found = FoundFile{L"/home/a.c", step, confidence};
  return file;
}

ResolvedFile missedWith(std::vector<RejectedFile> rejected) {
  ResolvedFile file = fileOf(QV_2_9::scSourceFiles, L"/ci/b.c");
  file.state = FileState::NotFound;
  file.rejected = std::move(rejected);
  return file;
}

Resolution sample() {
  Resolution resolution;
  resolution.manifest = L"m.json";
  resolution.files.push_back(fileOf(QV_2_9::scBinaryFiles, L"/ci/app"));
  resolution.files.push_back(foundBy(6, 0));
  resolution.files.push_back(foundBy(6, 1));
  resolution.files.push_back(foundBy(7, 0));
  resolution.files.push_back(missedWith({}));
  resolution.files.push_back(missedWith({{L"/s/b.c", 6, 1, L"%ChecksumMismatch"}}));
  return resolution;
}

/// Returns the data that stands in a page, as a browser reads it.
json dataOf(const std::string& page) {
  const std::string begin = R"(<script id="data" type="application/json">)";
  const std::size_t at = page.find(begin) + begin.size();
  return json::parse(page.substr(at, page.find("</script", at) - at));
}

std::size_t countOf(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
    ++count;
  return count;
}

TEST(MissReason, IsTheNearestMiss) {
  const RejectedFile mismatch{L"/s/a", 2, 0, L"%ChecksumMismatch"};
  const RejectedFile timed{L"/s/a", 2, 1, L"%ModificationTimeOrSizeMismatch"};
  const RejectedFile unusable{L"/s/a", 2, 0, L"%CantOpenFile"};
  const RejectedFile other{L"/s/a", 2, 2, L"no"};
  EXPECT_EQ(missReason(missedWith({})), MissReason::NoCandidate);
  EXPECT_EQ(missReason(missedWith({unusable, mismatch})), MissReason::OtherContent);
  EXPECT_EQ(missReason(missedWith({timed})), MissReason::OtherContent);
  EXPECT_EQ(missReason(missedWith({other, unusable})), MissReason::Unusable);
  EXPECT_EQ(missReason(missedWith({other})), MissReason::Failed);
}

TEST(MissReason, NamesTheFirstThreeCandidates) {
  const RejectedFile one{L"/s/a", 2, 0, L"%CantOpenFile"};
  EXPECT_EQ(missSentence(missedWith({})), "no candidate existed in any place searched");
  EXPECT_EQ(missSentence(missedWith({one})), "/s/a cannot be opened");
  EXPECT_THAT(missSentence(missedWith({one, one, one, one, one})), HasSubstr(", and 2 more"));
  EXPECT_EQ(missSentence(foundBy(2, 0)), "");
}

TEST(ResolutionSummary, CountsByStepAndReason) {
  const auto kinds = summarize(sample());
  EXPECT_EQ(kinds[0].notTried, 1);
  EXPECT_EQ(kinds[1].files, 0);
  EXPECT_EQ(kinds[2].files, 5);
  EXPECT_EQ(kinds[2].found, 3);
  EXPECT_EQ(kinds[2].notFound, 2);
  EXPECT_EQ(kinds[2].foundBy.at(6).confirmed, 1);
  EXPECT_EQ(kinds[2].foundBy.at(6).notContradicted, 1);
  EXPECT_EQ(kinds[2].foundBy.at(7).confirmed, 1);
  EXPECT_EQ(kinds[2].missed.at(MissReason::NoCandidate), 1);
  EXPECT_EQ(kinds[2].missed.at(MissReason::OtherContent), 1);
}

TEST(ResolutionSummary, IsATableOfTheKindsThatTheManifestHas) {
  Resolution resolution = sample();
  resolution.mappings = {{L"/ci", L"/home", true, 2}, {L"/x", L"/y", false, 0}};
  EXPECT_EQ(summaryText(resolution),
            "binaries                    0 of 1  found\n"
            "  stopped before            1       not tried\n"
            "sources                     3 of 5  found\n"
            "  low-priority directories  2       1 confirmed, 1 not contradicted\n"
            "  suggested path            1       confirmed\n"
            "  no file of this name      1       not found\n"
            "  only with other content   1       not found\n"
            "learned /ci -> /home, confirmed 2 times\n"
            "mapped /x -> /y\n");
}

TEST(ResolutionJson, HoldsEverythingOfAFile) {
  Resolution resolution;
  resolution.files.push_back(foundBy(2, 1));
  RecordedFile& recorded = resolution.files[0].recorded;
  recorded.module = L"/ci/app";
  recorded.md5 = L"9e107d9d372bb6826bd81d3542a419d6";
  recorded.size = 12;
  recorded.modificationTime = 1700000000;
  resolution.files[0].archived = QV_2_9::arArchived;
  resolution.files[0].microseconds = 5;
  const json expected = json::parse(R"({
    "kind": "src", "name": "/ci/a.c", "module": "/ci/app",
    "md5": "9e107d9d372bb6826bd81d3542a419d6", "size": 12, "time": 1700000000,
    "state": "found", "path": "/home/a.c", "step": 2, "step_text": "high-priority directories",
    "confidence": 1, "confidence_text": "not contradicted",
    "reason": null, "reason_text": null, "message": null, "rejected": [],
    "archived": 0, "archived_text": "archived", "microseconds": 5})");
  EXPECT_EQ(json(resolutionDocument(resolution, true)).at("files").at(0), expected);
}

TEST(ResolutionJson, HoldsTheReasonOfAMiss) {
  Resolution resolution;
  resolution.files.push_back(missedWith({{L"/s/b.c", 6, 1, L"%ChecksumMismatch"}}));
  const json file = resolutionDocument(resolution, true).at("files").at(0);
  EXPECT_EQ(file.at("state"), "not-found");
  EXPECT_EQ(file.at("path"), nullptr);
  EXPECT_EQ(file.at("reason"), "other-content");
  EXPECT_EQ(file.at("message"), "/s/b.c has another checksum");
  EXPECT_EQ(file.at("rejected"), json::parse(R"([{"path": "/s/b.c", "step": 6, "code": 1,
    "message": "%ChecksumMismatch", "reason": "has another checksum"}])"));
}

TEST(ResolutionJson, HasTheSummaryOfEachKind) {
  const json summary = resolutionDocument(sample(), true).at("summary");
  ASSERT_EQ(summary.size(), 3u);
  EXPECT_EQ(summary[2], json::parse(R"({"kind": "src", "files": 5, "found": 3, "not_found": 2,
    "not_tried": 0,
    "found_by": [{"step": 6, "step_text": "low-priority directories", "confirmed": 1,
                  "not_contradicted": 1},
                 {"step": 7, "step_text": "suggested path", "confirmed": 1,
                  "not_contradicted": 0}],
    "not_found_by": [{"reason": "no-candidate", "reason_text": "no file of this name", "files": 1},
                     {"reason": "other-content", "reason_text": "only with other content",
                      "files": 1}]})"));
}

TEST(ResolutionJson, LeavesRejectedFilesOutOnRequest) {
  const json document = resolutionDocument(sample(), false);
  EXPECT_FALSE(document.at("files").at(1).contains("rejected"));
}

TEST(ResolveReport, SpellsMarkupOut) {
  EXPECT_EQ(jsonForMarkup(R"(["</script><!--&"])"), R"(["\u003c/script\u003e\u003c!--\u0026"])");
}

TEST(ResolveReport, LetsNoFileNameOutOfItsData) {
  const std::string bare = reportPage(Resolution());
  Resolution resolution;
  resolution.files.push_back(
      fileOf(QV_2_9::scSourceFiles, L"/ci/</script><script>alert(1)</script><!--&amp;\"'.cpp"));
  const std::string page = reportPage(resolution);
  EXPECT_EQ(countOf(page, "<script"), countOf(bare, "<script"));
  EXPECT_EQ(countOf(page, "</script"), countOf(bare, "</script"));
  EXPECT_EQ(countOf(page, "<!--"), countOf(bare, "<!--"));
  EXPECT_EQ(dataOf(page).at("files").at(0).at("name"),
            "/ci/</script><script>alert(1)</script><!--&amp;\"'.cpp");
}

TEST(ResolveReport, ReplacesBytesThatAreNoText) {
  Resolution resolution;
  resolution.files.push_back(fileOf(QV_2_9::scSourceFiles, L"a\xDCFF.c"));
  EXPECT_EQ(dataOf(reportPage(resolution)).at("files").at(0).at("name"), "a\xEF\xBF\xBD.c");
}

TEST(ResolveReport, LoadsNothing) {
  const std::string page = reportPage(sample());
  EXPECT_THAT(page, HasSubstr("default-src 'none'"));
  for (const char* way :
       {"http://", "https://", "src=", "@import", "url(", "<link", "<img", "fetch("})
    EXPECT_THAT(page, Not(HasSubstr(way)));
  EXPECT_THAT(page, Not(HasSubstr("_HASH@"))) << "the hashes of the policy were not put in";
  EXPECT_THAT(page, Not(HasSubstr("@DATA@")));
}

TEST(ResolveReport, MakesNoMarkupOfTexts) {
  for (const char* way :
       {"innerHTML", "outerHTML", "insertAdjacentHTML", "document.write", "eval("})
    EXPECT_THAT(kReportPage, Not(HasSubstr(way)));
}

}  // namespace
}  // namespace quiver_tool
