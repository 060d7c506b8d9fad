// The progress bar of a run.

#include "resolve_progress.h"

#include <string>

#include <gtest/gtest.h>

namespace quiver_tool {
namespace {

TEST(ResolveProgress, ShowsCountsAndTheFile) {
  EXPECT_EQ(resolveProgressLine({6, 12, 0}, "/ci/a.c"),
            "[############            ]  6 of 12  /ci/a.c");
  EXPECT_EQ(resolveProgressLine({12, 12, 3}, "a.c"),
            "[########################]  12 of 12, 3 not found  a.c");
  EXPECT_EQ(resolveProgressLine({0, 0, 0}, ""), "[                        ]  0 of 0  ");
}

TEST(ResolveProgress, KeepsTheEndOfALongNameOnOneLine) {
  const std::string line = resolveProgressLine({1, 2, 0}, std::string(200, 'x') + "/parse.c");
  EXPECT_EQ(line.size(), 79u);
  EXPECT_TRUE(line.ends_with("xx/parse.c")) << line;
  EXPECT_NE(line.find("  ...x"), std::string::npos) << line;
}

TEST(ResolveProgress, CutsNoCharacterInHalf) {
  std::string name;
  for (int i = 0; i < 100; ++i) name += "\xC3\xA9";
  const std::string line = resolveProgressLine({1, 2, 0}, name);
  const std::size_t rest = line.find("...") + 3;
  EXPECT_EQ(line[rest], '\xC3') << line;
  EXPECT_EQ(rest + (line.size() - rest) / 2, 79u) << "columns";
}

TEST(ResolveProgress, SpellsControlCharactersOut) {
  EXPECT_EQ(resolveProgressLine({0, 1, 0}, "a\n\x1b[2J"),
            "[                        ]  0 of 1  a\\x0a\\x1b[2J");
}

TEST(ResolveProgress, WritesOnOneLineAndWipesItOut) {
  std::string shown;
  ResolveProgress progress([&shown](const std::string& bytes) { shown += bytes; });
  progress.show({0, 2, 0}, "a.c");
  progress.show({1, 2, 0}, "b.c");
  const std::string line = resolveProgressLine({0, 2, 0}, "a.c");
  EXPECT_EQ(shown, "\r" + line) << "faster than an eye";
  progress.hide();
  progress.hide();
  EXPECT_EQ(shown, "\r" + line + "\r" + std::string(line.size(), ' ') + "\r");
}

TEST(ResolveProgress, WritesNothingForNobody) {
  ResolveProgress progress(nullptr);
  progress.show({0, 2, 0}, "a.c");
  progress.hide();
}

}  // namespace
}  // namespace quiver_tool
