// Line numbers of the search engine's trace lines. They are fixed: whoever reads traces, by eye or
// by script, knows the lines by these numbers.

#pragma once

namespace QV_2_9::internal {

inline constexpr int kLineSuggestedResolutions = 931;
inline constexpr int kLineFilesFoundNotInstalled = 956;
inline constexpr int kLineFilesFoundGone = 965;
inline constexpr int kLineResultOfFilesFound = 975;
inline constexpr int kLineNoFilesFoundNotInstalled = 986;
inline constexpr int kLineResultOfNoFilesFound = 1006;
inline constexpr int kLineNothingOfNoFilesFound = 1010;
inline constexpr int kLineNoFilesFoundGone = 1016;
inline constexpr int kLineSearchEnvironment = 1024;
inline constexpr int kLineSearchingBinFile = 1047;
inline constexpr int kLineSearchingSymFile = 1065;
inline constexpr int kLineSearchingSrcFile = 1085;
inline constexpr int kLineFoundFile = 1165;
inline constexpr int kLineNothingFoundInSteps = 1196;

}  // namespace QV_2_9::internal
