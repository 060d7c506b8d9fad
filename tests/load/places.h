// The trees that are searched, in a temporary directory of the program's own.
//
//   still/00 .. 23/    files that never change; each name is there once
//   decoy/             the same names for every second of them, with another content
//   moving/A/          files and directories that one thread makes, renames and removes
//     right/           where a file that is there has the recorded content
//     wrong/           where it never has
//     both/            where it changes
//   staging/A/         where files are written before they get a name in moving/A
//   binaries/          real binaries without their symbol files
//   store/             a store of symbol files, copied into the cache
//   steady/            one that is used in place
//   cache/  default/

#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "quiver/search_dirs.h"
#include "support/temp_tree.h"

namespace quiver_load {

struct StillFile {
  std::wstring name;
  std::wstring path;
  std::wstring decoy;  ///< Empty when there is none.
  QV_2_9::search_category_t category;
};

/// Where a symbol file comes from.
enum class SymbolSource {
  kStore,   ///< A directory, through a cache that is emptied now and then.
  kServer,  ///< A server, through another.
  kSteady   ///< A directory in which it is used: it is always found.
};

/// A real binary, and where its symbol file is.
struct RealBinary {
  std::wstring path;
  std::wstring symbolName;
  std::wstring symbolFile;  ///< The original of the symbol file.
  std::string content;      ///< Of the symbol file.
  SymbolSource source;
};

/// Never changes once it is made; what it describes does.
class Places final {
 public:
  static constexpr int kStillDirs = 24;
  static constexpr int kAreas = 2;
  static constexpr int kMovingNames = 12;
  static constexpr std::string_view kRecorded = "as it was recorded\n";
  static constexpr std::string_view kOther = "not as it was recorded\n";

  /// `realFiles` is the directory of binaries and symbol files that real tools made.
  explicit Places(const std::filesystem::path& realFiles);

  std::wstring path(const std::string& name) const { return m_tree.path(name); }
  const std::vector<StillFile>& stillFiles() const { return m_still; }
  const std::vector<RealBinary>& binaries() const { return m_binaries; }
  /// Returns null for other names; takes recorded paths too.
  const StillFile* stillFile(std::wstring_view recorded) const;

  static std::string movingName(int number) { return "moving" + std::to_string(number) + ".cpp"; }
  /// Returns a file that has the recorded content of the moving ones.
  std::wstring recordedFile() const { return path("recorded/recorded.cpp"); }
  std::wstring stillDir(int number) const;

 private:
  void addStill(int number);
  void addReal(const std::filesystem::path& realFiles);

  quiver_test::TempTree m_tree;
  std::vector<StillFile> m_still;
  std::vector<RealBinary> m_binaries;
};

}  // namespace quiver_load
