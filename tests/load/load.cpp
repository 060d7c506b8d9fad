// Looks up on eight threads while everything changes that may, and judges what came of it.
//
//   load REAL_FILES [--seconds N]
//
// REAL_FILES is a directory of binaries and symbol files; SYMSRV_SERVER names the port of a server
// of them on this machine. Runs for N seconds (60), and on until each kind of work was done. Prints
// what was done in each second; the exit status is 0 when no answer was wrong, no kind of work was
// left out, memory did not grow and no descriptor was kept.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>

#include "load/load_run.h"
#include "load/verdict.h"

namespace quiver_load {
namespace {

using std::chrono::seconds;
using Clock = std::chrono::steady_clock;

// How long each kind of work is waited for, beyond the time of the run.
constexpr seconds kPatience{120};
// A thread that does not end a lookup in this time waits for ever.
constexpr seconds kLongestLookup{120};

constexpr std::size_t kMiB = std::size_t{1} << 20;

/// Ends the process when a thread stands still, with what a sanitizer or a debugger can show.
class Watchdog final {
 public:
  void look(const std::vector<std::uint64_t>& lookups) {
    const Clock::time_point now = Clock::now();
    m_last.resize(lookups.size(), {0, now});
    for (std::size_t i = 0; i < lookups.size(); ++i) {
      if (m_last[i].lookups != lookups[i])
        m_last[i] = {lookups[i], now};
      if (now - m_last[i].at < kLongestLookup)
        continue;
      std::printf("WRONG: thread %zu stands still after %llu lookups\n",
                  i,
                  static_cast<unsigned long long>(lookups[i]));
      std::abort();
    }
  }

 private:
  struct Last {
    std::uint64_t lookups;
    Clock::time_point at;
  };
  std::vector<Last> m_last;
};

/// Prints what was done since the last line.
class Ticker final {
 public:
  explicit Ticker(const WorkCounts& counts) : m_counts(counts) {
    std::printf("%4s %8s %8s %8s %8s %8s %8s %9s %9s %8s %6s\n",
                "s",
                "lookups",
                "binary",
                "symbol",
                "source",
                "shared",
                "own",
                "downloads",
                "callbacks",
                "files",
                "MiB");
  }

  void tick(seconds time) {
    const Row now = {m_counts.lookups(),
                     m_counts.of(Work::kBinaryLookup),
                     m_counts.of(Work::kSymbolLookup),
                     m_counts.of(Work::kSourceLookup),
                     m_counts.of(Work::kSharedSearch),
                     m_counts.of(Work::kOwnSearch),
                     m_counts.downloads(),
                     m_counts.callbackChanges(),
                     m_counts.fileChanges()};
    std::printf("%4lld", static_cast<long long>(time.count()));
    constexpr int kWidths[] = {8, 8, 8, 8, 8, 8, 9, 9, 8};
    for (std::size_t i = 0; i < now.size(); ++i)
      std::printf(" %*llu", kWidths[i], static_cast<unsigned long long>(now[i] - m_last[i]));
    std::printf(" %6zu\n", residentBytes() / kMiB);
    m_last = now;
  }

 private:
  using Row = std::array<std::uint64_t, 9>;

  const WorkCounts& m_counts;
  Row m_last{};
};

struct Measured {
  double seconds;
  std::size_t memoryAfterThird;
  std::size_t memoryAtEnd;
};

Measured run(LoadRun& load, const WorkCounts& counts, seconds time) {
  Ticker ticker(counts);
  Watchdog watchdog;
  Measured measured{0, 0, 0};
  const Clock::time_point start = Clock::now();
  load.start();
  for (seconds passed{1};; ++passed) {
    std::this_thread::sleep_until(start + passed);
    ticker.tick(passed);
    watchdog.look(load.lookupsOfEach());
    if (passed <= std::max(time / 3, seconds(1)))
      measured.memoryAfterThird = residentBytes();
    if (passed >= time && (counts.missing().empty() || passed >= time + kPatience))
      break;
  }
  measured.memoryAtEnd = residentBytes();
  load.finish();
  measured.seconds = std::chrono::duration<double>(Clock::now() - start).count();
  return measured;
}

void print(const WorkCounts& counts, const Measured& measured) {
  std::printf("\nin %.1f seconds:\n", measured.seconds);
  for (int i = 0; i < static_cast<int>(Work::kCount); ++i) {
    const auto count = static_cast<double>(counts.of(static_cast<Work>(i)));
    std::printf(
        "%12.0f %9.1f /s  %s\n", count, count / measured.seconds, nameOf(static_cast<Work>(i)));
  }
  std::printf("%.0f lookups a second; %zu MiB after a third, %zu MiB at the end (allowed: %zu)\n",
              static_cast<double>(counts.lookups()) / measured.seconds,
              measured.memoryAfterThird / kMiB,
              measured.memoryAtEnd / kMiB,
              (measured.memoryAfterThird + allowedGrowth(measured.memoryAfterThird)) / kMiB);
}

void print(const char* when, const Descriptors& open) {
  std::printf("descriptors %s: %zu of indexes, %zu others\n",
              when,
              open.noticeQueues + open.mountTables,
              open.others.size());
}

int load(const char* realFiles, const char* port, seconds time) {
  const unsigned seed = std::random_device()();
  std::printf("seed %u\n", seed);
  WorkCounts counts;
  Findings findings;
  const Descriptors before = openDescriptors();
  {
    const Places places(realFiles);
    const SymbolSources symbols(places, port);
    LoadRun load(places, symbols, counts, findings, seed);
    const Measured measured = run(load, counts, time);
    print(counts, measured);
    for (const std::string& name : counts.missing()) findings.add("never done: " + name);
    if (time >= kShortestForMemory)
      checkMemory(measured.memoryAfterThird, measured.memoryAtEnd, findings);
  }
  const Descriptors after = openDescriptors();
  print("before", before);
  print("after", after);
  checkDescriptors(before, after, findings);
  std::printf("%s: %zu findings\n", findings.count() == 0 ? "passed" : "FAILED", findings.count());
  return findings.count() == 0 ? 0 : 1;
}

}  // namespace
}  // namespace quiver_load

int main(int count, char** arguments) {
  const char* const port = std::getenv("SYMSRV_SERVER");
  const bool hasSeconds = count == 4 && std::strcmp(arguments[2], "--seconds") == 0;
  const long seconds = hasSeconds ? std::strtol(arguments[3], nullptr, 10) : 60;
  if (!port || (count != 2 && !hasSeconds) || seconds <= 0) {
    std::fprintf(stderr, "usage: SYMSRV_SERVER=PORT load REAL_FILES [--seconds N]\n");
    return 2;
  }
  std::setvbuf(stdout, nullptr, _IOLBF, 0);
  return quiver_load::load(arguments[1], port, std::chrono::seconds(seconds));
}
