// Figures about lookups that take a process of their own, one per line: a word and a number.
//
//   measure index TREE              one walk, building the index, warm lookups, a whole result
//   measure growth PLACE COUNT...   searches that yield so many candidates, made below PLACE
//   measure md5 FILE [again]        the checksum of a file; again when it may be remembered

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "paku/file_search.h"
#include "paku/index_settings.h"
#include "paku/md5_memo.h"
#include "paku/text_encoding.h"
#include "paku/tree_registry.h"

#include "measured_search.h"

namespace fs = std::filesystem;

using namespace quiver_benchmark;
using PAKU_3_1::internal::IndexUse;
using PAKU_3_1::internal::TreeRegistry;

namespace {

constexpr std::size_t kDefaultMemory = std::size_t{256} << 20;
constexpr int kRepeats = 7;

void say(const char* word, double value) {
  std::printf("%s %.6g\n", word, value);
}

void use(IndexUse use) {
  TreeRegistry::instance().clear();
  PAKU_3_1::internal::setIndexSettings({use, kDefaultMemory});
}

/// Files of a tree in random order, as they were recorded on another machine.
std::vector<std::wstring> sampleOf(const fs::path& tree, std::size_t count) {
  std::vector<std::wstring> names;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(tree))
    if (!entry.is_directory())
      names.push_back(L"C:\\build\\work\\project" +
                      entry.path().wstring().substr(tree.wstring().size()));
  std::shuffle(names.begin(), names.end(), std::mt19937(1));
  say("files", static_cast<double>(names.size()));
  names.resize(std::min(names.size(), count));
  for (std::wstring& name : names) std::replace(name.begin(), name.end(), L'/', L'\\');
  return names;
}

void mustFind(QV_2_9::IFileSearch& search, const std::wstring& name) {
  if (!findSource(search, name))
    throw std::runtime_error("a file of the tree was not found");
}

void mustMiss(QV_2_9::IFileSearch& search, const std::wstring& name, const wchar_t* binary = L"") {
  if (findSource(search, name, binary))
    throw std::runtime_error("a file that does not exist was found");
}

std::vector<Microseconds> hits(QV_2_9::IFileSearch& search,
                               const std::vector<std::wstring>& names) {
  std::vector<Microseconds> times;
  for (const std::wstring& name : names) times.push_back(timeOf([&] { mustFind(search, name); }));
  return times;
}

std::vector<Microseconds> misses(QV_2_9::IFileSearch& search,
                                 std::size_t count,
                                 const wchar_t* binary = L"") {
  std::vector<Microseconds> times;
  for (std::size_t i = 0; i < count; ++i) {
    const std::wstring name = L"C:\\build\\work\\missing_" + std::to_wstring(i) + L".cpp";
    times.push_back(timeOf([&] { mustMiss(search, name, binary); }));
  }
  return times;
}

/// One scan of a tree for a name that is not there.
Microseconds scan(const std::wstring& tree) {
  struct Nothing final : PAKU_3_1::IFileScanCallback {
    bool onFileFound(const PAKU_3_1::String&) override { return true; }
  } nothing;
  PAKU_3_1::FileSearch search;
  search.addSearchDirectory(PAKU_3_1::Filename(tree), -1, 0);
  return timeOf([&] { search.find(L"missing", nothing); });
}

void measureIndex(const fs::path& path) {
  const std::wstring tree = path.wstring();
  const std::vector<std::wstring> names = sampleOf(path, 10000);

  std::vector<Microseconds> walks;
  std::vector<Microseconds> wholes;
  std::vector<Microseconds> builds;
  for (int i = 0; i < kRepeats; ++i) {
    use(IndexUse::kNever);
    walks.push_back(scan(tree));
    use(IndexUse::kFromSecondScan);
    wholes.push_back(timeOf([&] { hits(*searchIn(tree), names); }));
    use(IndexUse::kFromFirstScan);
    builds.push_back(scan(tree));
  }
  say("walk_us", median(walks));
  say("build_us", median(builds));
  say("whole_result_us", median(wholes));
  say("whole_result_sources", static_cast<double>(names.size()));
  const PAKU_3_1::internal::IndexCounts counts = TreeRegistry::instance().counts();
  say("indexed_entries", static_cast<double>(counts.entries));
  say("index_bytes", static_cast<double>(counts.bytes));

  const QV_2_9::ObjectPtr<QV_2_9::IFileSearch> search = searchIn(tree);
  hits(*search, names);
  say("warm_hit_us", median(hits(*search, names)));
  say("warm_miss_us", median(misses(*search, names.size())));
  const std::wstring binary = tree + L"/bin/program";
  misses(*search, 3, binary.c_str());
  say("warm_miss_around_binary_us", median(misses(*search, names.size(), binary.c_str())));
}

/// Makes `count` files whose names differ in letter case alone, 16 in each directory.
void makeCandidates(const fs::path& place, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    std::string name = "candidate.c";
    for (std::size_t bit = 0; bit < 4; ++bit)
      if (i >> bit & 1)
        name[bit] = static_cast<char>(name[bit] - 'a' + 'A');
    const fs::path directory = place / std::to_string(i / 16);
    fs::create_directories(directory);
    std::ofstream(directory / name);
  }
}

void measureGrowth(const fs::path& place, const std::vector<std::size_t>& counts) {
  for (const std::size_t count : counts) {
    const fs::path tree = place / std::to_string(count);
    if (!fs::exists(tree))
      makeCandidates(tree, count);
    const QV_2_9::ObjectPtr<QV_2_9::IFileSearch> search = searchIn(tree.wstring());
    for (const IndexUse mode : {IndexUse::kNever, IndexUse::kFromFirstScan}) {
      use(mode);
      std::vector<Microseconds> times;
      for (int i = 0; i < kRepeats; ++i)
        times.push_back(timeOf([&] { mustFind(*search, L"candidate.c"); }));
      const std::string word =
          (mode == IndexUse::kNever ? "walked_" : "warm_") + std::to_string(count) + "_us";
      say(word.c_str(), median(times));
    }
  }
}

void measureMd5(const fs::path& path, bool isAgain) {
  PAKU_3_1::internal::Md5Memo::instance().setRest(std::chrono::nanoseconds(0));
  const QV_2_9::ObjectPtr<QV_2_9::IChecksumCalculator> calculator =
      QV_2_9::IChecksumCalculator::create();
  const std::wstring text = path.wstring();
  QV_2_9::ObjectPtr<QV_2_9::IChecksum> checksum;
  say("md5_us", timeOf([&] { checksum = calculator->calculate(text.c_str(), QV_2_9::ctMD5); }));
  if (isAgain)
    say("md5_again_us", timeOf([&] { calculator->calculate(text.c_str(), QV_2_9::ctMD5); }));
  if (!checksum)
    throw std::runtime_error("no checksum");
  std::printf("md5 %ls\n", checksum->getValue());
}

std::vector<std::size_t> countsOf(char** begin, char** end) {
  std::vector<std::size_t> counts;
  for (; begin != end; ++begin) counts.push_back(std::strtoul(*begin, nullptr, 10));
  return counts;
}

/// Returns false for a wrong command line.
bool measure(const std::string& what, int argc, char** argv) {
  if (what == "index" && argc == 3)
    measureIndex(argv[2]);
  else if (what == "growth" && argc > 3)
    measureGrowth(argv[2], countsOf(argv + 3, argv + argc));
  else if (what == "md5" && argc == 3)
    measureMd5(argv[2], false);
  else if (what == "md5" && argc == 4 && argv[3] == std::string("again"))
    measureMd5(argv[2], true);
  else
    return false;
  return true;
}

}  // namespace

int main(int argc, char** argv) try {
  if (measure(argc >= 3 ? argv[1] : "", argc, argv))
    return 0;
  std::fputs("usage: measure index TREE | growth PLACE COUNT... | md5 FILE [again]\n", stderr);
  return 2;
} catch (const std::exception& error) {
  std::fprintf(stderr, "measure: %s\n", error.what());
  return 1;
}
