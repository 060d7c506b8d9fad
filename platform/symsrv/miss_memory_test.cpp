// How long a miss is remembered, whatever the file says that remembers it.

#include <chrono>
#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "symsrv/download_fixture_test_support.h"
#include "symsrv/memory.h"

namespace symsrv_1_0::internal {
namespace {

std::int64_t now() {
  return std::chrono::duration_cast<std::chrono::seconds>(
             std::chrono::system_clock::now().time_since_epoch())
      .count();
}

struct TimeRow {
  const char* name;
  std::string time;
  bool isMissing;
};

class MissOnDisk : public DownloadFixture, public ::testing::WithParamInterface<TimeRow> {
 protected:
  MissOnDisk() { serve(); }

  /// Writes a time into the only file that remembers a miss.
  void setTime(const std::string& time) {
    for (const auto& entry : std::filesystem::directory_iterator(at("cache/.misses"))) {
      if (entry.path().extension() != ".miss")
        continue;
      std::string text = contentOf(entry.path().string());
      text = "not there at " + time + text.substr(text.find('\n'));
      std::ofstream(entry.path(), std::ios::binary) << text;
    }
  }
};

TEST_P(MissOnDisk, CountsWhenItsTimeIsSensible) {
  obtainFrom("missing");
  const std::size_t asked = requests().size();
  setTime(GetParam().time);
  forget();
  obtainFrom("missing");
  EXPECT_EQ(requests().size() > asked, !GetParam().isMissing);
}

const TimeRow kTimes[] = {
    {"Now", std::to_string(now()), true},
    {"Old", std::to_string(now() - 601), false},
    {"Ahead", std::to_string(now() + 3600), false},
    {"FarAhead", "9223372036854775807", false},
    {"TooManyDigits", "99999999999999999999999", false},
    {"Negative", "-1", false},
    {"FarBehind", "-9223372036854775808", false},
    {"FurtherBehind", "-99999999999999999999999", false},
    {"Signed", "+" + std::to_string(now()), false},
    {"WithMore", std::to_string(now()) + "x", false},
    {"Nothing", "", false},
};
INSTANTIATE_TEST_SUITE_P(Table, MissOnDisk, ::testing::ValuesIn(kTimes), [](const auto& row) {
  return std::string(row.param.name);
});

}  // namespace
}  // namespace symsrv_1_0::internal
