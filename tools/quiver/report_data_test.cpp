// The data of the page of reports.

#include "report_data.h"

#include <string>

#include <gmock/gmock.h>

namespace quiver_tool {
namespace {

using nlohmann::json;

ResolvedFile missedSource(const wchar_t* name) {
  ResolvedFile file;
  file.recorded.category = QV_2_9::scSourceFiles;
  file.recorded.name = name;
  file.recorded.module = L"/ci/app";
  file.state = FileState::NotFound;
  return file;
}

TEST(ReportData, HasJournalsWithoutBrackets) {
  Resolution resolution;
  resolution.files.push_back(missedSource(L"/ci/a.c"));
  resolution.files[0].journal.addStep(1);
  resolution.files[0].journal.addStepEnd(resolution.texts, 1, 25, L"no place");
  resolution.files[0].journal.addEnd(resolution.texts, L"nobody");
  const json data = reportData(resolution);
  EXPECT_EQ(data.at("files")[0].at("journal"), json::parse("[2, 1, 6, 1, 25, 0, 8, 1]"));
  EXPECT_EQ(data.at("texts")[0], "no place");
  EXPECT_EQ(data.at("texts")[1], "nobody");
  EXPECT_EQ(data.at("steps").size(), 8u);
  EXPECT_EQ(data.at("steps")[7], "suggested path");
}

TEST(ReportData, SharesWhatManyFilesSay) {
  Resolution resolution;
  resolution.texts.numberOf(L"of a journal");
  for (const wchar_t* name : {L"/ci/a.c", L"/ci/b.c"})
    resolution.files.push_back(missedSource(name));
  const json data = reportData(resolution);
  const json& one = data.at("files")[0];
  const json& two = data.at("files")[1];
  for (const char* member : {"module", "message", "reason_text"}) {
    ASSERT_TRUE(one.at(member).is_number()) << member;
    EXPECT_EQ(one.at(member), two.at(member));
    EXPECT_GT(one.at(member), 0) << "behind the texts of the journals";
  }
  EXPECT_EQ(data.at("texts").at(one.at("module").get<std::size_t>()), "/ci/app");
  EXPECT_EQ(data.at("texts").size(), 4u);
  EXPECT_EQ(one.at("name"), "/ci/a.c");
  EXPECT_EQ(one.at("reason"), "no-candidate") << "words for programs stay what they are";
}

TEST(ReportData, LeavesOutWhatHasNoValue) {
  Resolution resolution;
  resolution.files.push_back(missedSource(L"/ci/a.c"));
  const json file = reportData(resolution).at("files")[0];
  for (const char* member : {"md5", "size", "path", "step", "step_text", "archived", "rejected"})
    EXPECT_FALSE(file.contains(member)) << member;
}

}  // namespace
}  // namespace quiver_tool
