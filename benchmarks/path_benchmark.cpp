// What is done to every path: the canonical spelling, comparison, the hash.

#include <string>

#include <benchmark/benchmark.h>

#include "paku/canonical_path.h"
#include "paku/path_style.h"

#include "os/path_utils.h"

namespace {

using PAKU_3_1::PathStyle;
using PAKU_3_1::internal::canonicalPath;

constexpr const wchar_t* kPath = L"/home/user/checkout/project/component/source/some_file.cpp";
constexpr const wchar_t* kOtherCase = L"/home/user/checkout/project/component/source/Some_File.cpp";

void canonicalPathThatIsOne(benchmark::State& state) {
  for (auto iteration : state) benchmark::DoNotOptimize(canonicalPath(kPath, PathStyle::kPosix));
}
BENCHMARK(canonicalPathThatIsOne);

void canonicalPathThatIsMade(benchmark::State& state) {
  constexpr const wchar_t* kDotted =
      L"/home/user/./checkout//project/old/../component/source/some_file.cpp";
  for (auto iteration : state) benchmark::DoNotOptimize(canonicalPath(kDotted, PathStyle::kPosix));
}
BENCHMARK(canonicalPathThatIsMade);

void canonicalPathOfWindows(benchmark::State& state) {
  constexpr const wchar_t* kWindows = L"C:/ci/agent\\work\\.\\project\\old\\..\\source\\file.cpp";
  for (auto iteration : state)
    benchmark::DoNotOptimize(canonicalPath(kWindows, PathStyle::kWindows));
}
BENCHMARK(canonicalPathOfWindows);

void canonicalAbsolutePath(benchmark::State& state) {
  for (auto iteration : state)
    benchmark::DoNotOptimize(QV_2_9::toCanonicalAbsolutePath(kPath, false));
}
BENCHMARK(canonicalAbsolutePath);

void compareEqualPaths(benchmark::State& state) {
  for (auto iteration : state)
    benchmark::DoNotOptimize(QV_2_9::compareIgnoreCase(kPath, kOtherCase));
}
BENCHMARK(compareEqualPaths);

void compareLettersBeyondAscii(benchmark::State& state) {
  for (auto iteration : state)
    benchmark::DoNotOptimize(QV_2_9::compareIgnoreCase(L"/home/user/\u00dcbung/\u00e4nderung.cpp",
                                                       L"/home/user/\u00fcbung/\u00c4nderung.cpp"));
}
BENCHMARK(compareLettersBeyondAscii);

void hashOfAPath(benchmark::State& state) {
  for (auto iteration : state) benchmark::DoNotOptimize(QV_2_9::internal::hashIgnoreCase(kPath));
}
BENCHMARK(hashOfAPath);

}  // namespace
