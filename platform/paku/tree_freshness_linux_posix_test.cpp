// An index is never older than the search that uses it: trees change at random, and each search is
// compared with a walk.
//
// Everything happens in a process that sees nothing but a file system of its own (see
// confined_process_test_support.h), so that an error here, or a link that leads upwards, can do no
// harm. The seed is in each message; the same seed makes the same changes.

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <random>
#include <string>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>

#include "paku/confined_process_test_support.h"
#include "paku/file_search.h"
#include "paku/found_paths_test_support.h"
#include "paku/index_settings.h"
#include "paku/tree_registry.h"

namespace PAKU_3_1::internal {
namespace {

constexpr std::size_t kMemory = std::size_t{64} << 20;
constexpr std::size_t kMostDirectories = 24;
constexpr unsigned kShards = 4;

// Few names, so that what goes away comes back under the same name.
const char* const kNames[] = {"a", "A", "b", "src", "x.c", "X.c", "y.c"};

const wchar_t* const kSought[] = {
    L"x.c", L"src/x.c", L"a/src/X.c", L"A/x.c", L"b/a/y.c", L"src", L"y.c/x.c"};

/// A tree in /place/root, whose parts move to /place/out and back.
class ChangingTree final {
 public:
  explicit ChangingTree(unsigned seed) : m_random(seed) {
    mkdir("root", 0755);
    mkdir("out", 0755);
  }

  /// Makes one change, or tries to: what the system refuses is no change.
  void change() {
    switch (below(22)) {
      case 0:
      case 1:
      case 2:
      case 3:
      case 4:
        return makeFile(anyPlace());
      case 5:
      case 6:
      case 7:
        return makeDirectory();
      case 8:
      case 9:
      case 10:
        return removePlace(anyPlace());
      case 11:
      case 12:
      case 13:
      case 14:
        return move(anyPlace(), anyPlace());
      case 15:
        return replaceDirectory();
      case 16:
      case 17:
        return makeLink(anyPlace());
      case 18:
        return move(anyPlace(), "out/" + anyName());
      case 19:
        return move("out/" + anyName(), anyPlace());
      case 20:
        return changeRights();
      default:
        return link(anyPlace(), anyPlace());
    }
  }

  /// Another directory bears the root's name; now and then the old one comes back.
  void replaceRoot() {
    removePlace("out/root");
    rename("root", "out/root");
    if (below(2) == 0) {
      rename("out/root", "root");
      return;
    }
    mkdir("root", 0755);
    makeFile("root/x.c");
  }

  /// More changes than the system remembers.
  void overflow() const {
    unsigned limit = 16384;
    if (std::FILE* file = std::fopen("/proc/sys/fs/inotify/max_queued_events", "r")) {
      if (std::fscanf(file, "%u", &limit) != 1)
        limit = 16384;
      std::fclose(file);
    }
    for (unsigned i = 0; i <= limit / 2 + 1; ++i) {
      const std::string name = "root/many" + std::to_string(i % 2);
      close(open(name.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0644));
      ::unlink(name.c_str());
    }
  }

  unsigned below(unsigned limit) { return static_cast<unsigned>(m_random() % limit); }

 private:
  std::string anyName() { return kNames[below(std::size(kNames))]; }

  /// Returns a name in a directory of the tree, which is reached without links.
  std::string anyPlace() {
    const std::vector<std::string> directories = directoriesBelow("root");
    const auto count = static_cast<unsigned>(directories.size());
    return directories[below(count)] + "/" + anyName();
  }

  static bool isDirectory(const std::string& path) {
    struct stat status {};
    return lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
  }

  static std::vector<std::string> directoriesBelow(const std::string& top) {
    std::vector<std::string> found = {top};
    for (std::size_t i = 0; i < found.size(); ++i) {
      for (const char* name : kNames) {
        const std::string path = found[i] + "/" + name;
        if (isDirectory(path))
          found.push_back(path);
      }
    }
    return found;
  }

  static void makeFile(const std::string& path) {
    close(open(path.c_str(), O_CREAT | O_WRONLY | O_NOFOLLOW | O_CLOEXEC, 0644));
  }

  void makeDirectory() {
    if (directoriesBelow("root").size() < kMostDirectories)
      mkdir(anyPlace().c_str(), 0755);
  }

  /// A directory goes with all that is in it. Links are removed, never followed.
  static void removePlace(const std::string& path) {
    if (!isDirectory(path)) {
      ::unlink(path.c_str());
      return;
    }
    chmod(path.c_str(), 0755);  // `path` was seen to be a directory, and nobody else is here
    for (const char* name : kNames) removePlace(path + "/" + name);
    rmdir(path.c_str());
  }

  static void move(const std::string& from, const std::string& to) {
    rename(from.c_str(), to.c_str());
  }

  static void link(const std::string& from, const std::string& to) {
    static_cast<void>(linkat(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), 0));
  }

  void makeLink(const std::string& path) {
    const char* const targets[] = {"a", ".", "..", "../src", "x.c", "nowhere", "a/b", "../.."};
    static_cast<void>(symlink(targets[below(std::size(targets))], path.c_str()));
  }

  void replaceDirectory() {
    const std::string replaced = anyPlace();
    removePlace("out/replaced");
    move(replaced, "out/replaced");
    move(anyPlace(), replaced);
  }

  /// A closed directory is soon opened again, or the tree would be closed for good.
  void changeRights() {
    for (const std::string& path : directoriesBelow("root")) chmod(path.c_str(), 0755);
    const std::string path = anyPlace();
    const mode_t modes[] = {0755, 0000, 0311, 0444};
    if (isDirectory(path))
      chmod(path.c_str(), modes[below(std::size(modes))]);
  }

  std::mt19937 m_random;
};

struct Query {
  const wchar_t* directory;
  const wchar_t* name;
  int depth;
};

std::vector<std::wstring> answer(const Query& query) {
  FileSearch search;
  search.addSearchDirectory(Filename(query.directory), query.depth, 0);
  FoundPaths found;
  search.find(query.name, found);
  return found.paths();
}

std::vector<std::wstring> walked(const Query& query) {
  setIndexSettings({IndexUse::kNever, kMemory});
  const std::vector<std::wstring> paths = answer(query);
  setIndexSettings({IndexUse::kFromFirstScan, kMemory});
  return paths;
}

std::string text(const std::vector<std::wstring>& paths) {
  std::string all;
  for (const std::wstring& path : paths) all += " " + std::string(path.begin(), path.end());
  return all.empty() ? " nothing" : all;
}

Query anyQuery(ChangingTree& tree) {
  const wchar_t* const directories[] = {
      L"root", L"root", L"root", L"/place/root", L"root/a", L"to-root"};
  const int depths[] = {kWholeTree, kWholeTree, kWholeTree, 0, 1};
  return {directories[tree.below(std::size(directories))],
          kSought[tree.below(std::size(kSought))],
          depths[tree.below(std::size(depths))]};
}

std::string difference(const Query& query,
                       const std::vector<std::wstring>& expected,
                       const std::vector<std::wstring>& got) {
  if (expected == got)
    return {};
  const std::wstring name = std::wstring(query.directory) + L" " + query.name;
  return "in " + std::string(name.begin(), name.end()) + " to depth " +
         std::to_string(query.depth) + ": a walk finds" + text(expected) + "; the index says" +
         text(got);
}

struct Plan {
  unsigned seed;
  unsigned changes;
  unsigned changesPerOverflow;
  bool hasLookers;  ///< Two threads that look all the time, and compare when nothing changes.
};

/// Looks while the tree changes, without knowing what is right.
class Looker final {
 public:
  explicit Looker(unsigned seed) : m_thread([this, seed] { look(seed); }) {}
  ~Looker() {
    m_isOver = true;
    m_thread.join();
  }

 private:
  void look(unsigned seed) {
    std::mt19937 random(seed);
    while (!m_isOver) answer({L"root", kSought[random() % std::size(kSought)], kWholeTree});
  }

  std::atomic<bool> m_isOver = false;
  std::thread m_thread;
};

/// Returns what two threads find that look at the same time.
std::string compareTwice(const Query& query, const std::vector<std::wstring>& expected) {
  std::vector<std::wstring> found[2];
  std::thread other([&] { found[0] = answer(query); });
  found[1] = answer(query);
  other.join();
  const std::string first = difference(query, expected, found[0]);
  return first.empty() ? difference(query, expected, found[1]) : first;
}

void changeWhileOthersLook(ChangingTree& tree, unsigned count, unsigned seed) {
  const Looker one(seed);
  const Looker two(seed + 1);
  for (unsigned i = 0; i < count; ++i) tree.change();
}

/// Returns how often searches were compared, and what was wrong with the last.
std::string compareWithWalks(const Plan& plan) {
  setIndexSettings({IndexUse::kFromFirstScan, kMemory});
  ChangingTree tree(plan.seed);
  static_cast<void>(symlink("root", "to-root"));
  unsigned searches = 0;
  for (unsigned changes = 0; changes < plan.changes; ++searches) {
    const unsigned count = 1 + tree.below(plan.hasLookers ? 60 : 2);
    if (plan.hasLookers)
      changeWhileOthersLook(tree, count, plan.seed + changes);
    else
      for (unsigned i = 0; i < count; ++i) tree.change();
    changes += count;
    if (tree.below(300) == 0)
      tree.replaceRoot();
    if (changes % plan.changesPerOverflow < count)
      tree.overflow();
    const Query query = anyQuery(tree);
    const std::vector<std::wstring> expected = walked(query);
    const std::string wrong = plan.hasLookers ? compareTwice(query, expected)
                                              : difference(query, expected, answer(query));
    if (!wrong.empty())
      return "after " + std::to_string(changes) + " changes, " + wrong;
  }
  const IndexCounts counts = TreeRegistry::instance().counts();
  if (counts.answered * 4 < searches)
    return "the index answered " + std::to_string(counts.answered) + " of " +
           std::to_string(searches) + " searches only";
  if (counts.dropped == 0)
    return "no index was dropped, not even when changes were lost";
  return "ok: " + std::to_string(searches) + " searches, " + std::to_string(counts.answered) +
         " answers of the index, " + std::to_string(counts.built) + " built";
}

void expectNoDifference(const Plan& plan) {
  const Confined confined =
      runConfined(ConfinedUser::kOrdinary, [&] { return compareWithWalks(plan); });
  if (!confined.isPossible)
    GTEST_SKIP() << "this machine gives us no file system of our own";
  EXPECT_TRUE(confined.hasEnded);
  EXPECT_EQ(confined.report.substr(0, 3), "ok:") << "seed " << plan.seed << ": " << confined.report;
  std::printf("seed %u, %u changes: %s\n", plan.seed, plan.changes, confined.report.c_str());
}

#if defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
constexpr unsigned kChanges = 12000;
#else
constexpr unsigned kChanges = 50000;
#endif
#else
constexpr unsigned kChanges = 50000;
#endif

/// QUIVER_TEST_SEED repeats a run.
unsigned anySeed() {
  const char* const seed = std::getenv("QUIVER_TEST_SEED");
  return seed ? static_cast<unsigned>(std::strtoul(seed, nullptr, 10)) : std::random_device()();
}

/// Runs side by side: most of the time goes by while the kernel gives up watches.
class TreeFreshnessLinux : public testing::TestWithParam<unsigned> {};

TEST_P(TreeFreshnessLinux, IsThatOfAWalk) {
  expectNoDifference({anySeed() + GetParam(), kChanges / kShards, kChanges / kShards / 4, false});
}

TEST_P(TreeFreshnessLinux, IsThatOfAWalkForTwoThreads) {
  expectNoDifference(
      {anySeed() + GetParam(), kChanges / kShards / 2, kChanges / kShards / 4, true});
}

INSTANTIATE_TEST_SUITE_P(Shards, TreeFreshnessLinux, testing::Range(0u, kShards));

}  // namespace
}  // namespace PAKU_3_1::internal
