// One lookup in a small tree, for each category.
//
//   hit        the file is there
//   miss       there is no file of that name
//   md5_hit    the file is there and has the recorded checksum
//   md5_miss   the file is there and has another one
//
//   walk       the tree is walked and the file read, as for the first lookup of a process
//   index      the tree is indexed and the checksum remembered, as for all later ones

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

#include <benchmark/benchmark.h>

#include "paku/index_settings.h"
#include "paku/md5_memo.h"

#include "measured_search.h"

namespace fs = std::filesystem;

using namespace QV_2_9;

namespace {

constexpr int kDirectories = 400;
constexpr int kFilesEach = 10;
constexpr std::size_t kSoughtSize = std::size_t{64} << 10;
constexpr std::size_t kIndexMemory = std::size_t{64} << 20;

/// A tree of empty files with one file of each category to look for. Gone at the end.
class SearchedTree final {
 public:
  SearchedTree() : m_root(fs::temp_directory_path() / "quiver-benchmark-XXXXXX") {
    std::string name = m_root.string();
    if (!mkdtemp(name.data()))
      throw std::runtime_error("no temporary directory");
    m_root = name;
    for (int i = 0; i < kDirectories; ++i) addDirectory(i);
    for (const char* sought : {"sought.bin", "sought.sym", "sought.src"})
      std::ofstream(m_root / "directory_200" / sought) << std::string(kSoughtSize, 'x');
  }
  ~SearchedTree() {
    std::error_code ignored;
    fs::remove_all(m_root, ignored);
  }

  SearchedTree(const SearchedTree&) = delete;
  SearchedTree& operator=(const SearchedTree&) = delete;

  std::wstring root() const { return m_root.wstring(); }
  std::wstring sought() const { return (m_root / "directory_200" / "sought.src").wstring(); }

 private:
  void addDirectory(int number) const {
    const fs::path directory = m_root / ("directory_" + std::to_string(number));
    fs::create_directory(directory);
    for (int i = 0; i < kFilesEach; ++i)
      std::ofstream(directory / ("file_" + std::to_string(number) + '_' + std::to_string(i)));
  }

  fs::path m_root;
};

const SearchedTree& tree() {
  static const SearchedTree tree;
  return tree;
}

struct Category {
  const char* name;
  std::int32_t category;
  const wchar_t* found;
  const wchar_t* missing;
  ObjectPtr<IValidFile> (*find)(IFileSearch&, const wchar_t*, IValidatorCallback*);
};

const Category kCategories[] = {
    {"binary",
     scBinaryFiles,
     L"C:\\build\\out\\sought.bin",
     L"C:\\build\\out\\missing.bin",
     [](IFileSearch& search, const wchar_t* name, IValidatorCallback* check) {
       return search.findBinFile(name, check, nullptr);
     }},
    {"symbols",
     scSymbolFiles,
     L"C:\\build\\out\\sought.sym",
     L"C:\\build\\out\\missing.sym",
     [](IFileSearch& search, const wchar_t* name, IValidatorCallback* check) {
       return search.findSymFile(name, L"", L"", check, nullptr, nullptr);
     }},
    {"source",
     scSourceFiles,
     L"C:\\build\\project\\sought.src",
     L"C:\\build\\project\\missing.src",
     [](IFileSearch& search, const wchar_t* name, IValidatorCallback* check) {
       return search.findSrcFile(name, L"", L"", check, nullptr);
     }},
};

struct Outcome {
  const char* name;
  bool isThere;
  bool isChecked;
  bool isFound;
};

constexpr Outcome kOutcomes[] = {
    {"hit", true, false, true},
    {"miss", false, false, false},
    {"md5_hit", true, true, true},
    {"md5_miss", true, true, false},
};

void setWarm(bool isWarm) {
  using namespace PAKU_3_1::internal;
  setIndexSettings({isWarm ? IndexUse::kFromFirstScan : IndexUse::kNever, kIndexMemory});
  // No file has rested for a year yet: nothing is remembered.
  Md5Memo::instance().clear();
  Md5Memo::instance().setRest(std::chrono::hours(isWarm ? 0 : 24 * 365));
}

ObjectPtr<IChecksum> expectedChecksum(bool isRight) {
  const ObjectPtr<IChecksumCalculator> calculator = IChecksumCalculator::create();
  return isRight ? calculator->calculate(tree().sought().c_str(), ctMD5)
                 : calculator->createChecksum(ctMD5, L"d41d8cd98f00b204e9800998ecf8427e");
}

void lookUp(benchmark::State& state,
            const Category& category,
            const Outcome& outcome,
            bool isWarm) {
  const ObjectPtr<IFileSearch> search = quiver_benchmark::searchIn(tree().root());
  ChecksumValidator validator(category.category, expectedChecksum(outcome.isFound));
  IValidatorCallback* const check = outcome.isChecked ? &validator : nullptr;
  const wchar_t* const name = outcome.isThere ? category.found : category.missing;
  const auto isRight = [&] {
    return (category.find(*search, name, check).get() != nullptr) == outcome.isFound;
  };
  setWarm(isWarm);
  if (!isRight())
    state.SkipWithError("a wrong answer");
  for (auto iteration : state) benchmark::DoNotOptimize(isRight());
}

bool registerAll() {
  for (const Category& category : kCategories)
    for (const Outcome& outcome : kOutcomes)
      for (const bool isWarm : {false, true}) {
        const std::string name = std::string("lookup/") + category.name + '/' + outcome.name + '/' +
                                 (isWarm ? "index" : "walk");
        benchmark::RegisterBenchmark(name.c_str(), lookUp, category, outcome, isWarm)
            ->Unit(benchmark::kMicrosecond);
      }
  return true;
}

const bool s_areRegistered = registerAll();

}  // namespace
