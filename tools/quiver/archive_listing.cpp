#include "archive_listing.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <system_error>
#include <utility>

#include "quiver/checksum.h"
#include "text_encoding.h"

namespace quiver_tool {
namespace {

namespace fs = std::filesystem;
using QV_2_9::IChecksum;
using QV_2_9::IChecksumCalculator;
using QV_2_9::ObjectPtr;

constexpr const wchar_t* kArchiveFolder = L"archive";

/// What the entries of a folder are.
enum class Level { Archive, Kinds, Names, Versions, Copies };

struct KindFolder {
  const wchar_t* name;
  QV_2_9::search_category_t category;
};

constexpr KindFolder kKindFolders[] = {
    {L"binaries", QV_2_9::scBinaryFiles},
    {L"symbols", QV_2_9::scSymbolFiles},
    {L"sources", QV_2_9::scSourceFiles},
    {L"all", QV_2_9::scAllFiles},
};

std::optional<QV_2_9::search_category_t> kindOf(const std::wstring& folder) {
  for (const KindFolder& row : kKindFolders) {
    if (folder == row.name)
      return row.category;
  }
  return std::nullopt;
}

bool isMd5(const std::wstring& text) {
  constexpr std::size_t kDigits = 32;
  return text.size() == kDigits &&
         text.find_first_not_of(L"0123456789abcdef") == std::wstring::npos;
}

class Walk final {
 public:
  std::vector<ArchiveEntry> take() { return std::move(m_entries); }

  void visit(const fs::path& path, Level level, ArchiveEntry entry) {
    std::error_code error;
    const fs::file_type type = fs::symlink_status(path, error).type();
    if (type == fs::file_type::not_found)
      return;
    if (type == fs::file_type::none)
      entry.state = CopyState::Unreadable;
    const std::wstring name = fromNativePath(path.filename());
    entry.path += (entry.path.empty() ? L"" : L"/") + name;
    if (type == fs::file_type::regular)
      readSize(path, entry);
    if (type == fs::file_type::directory && takeName(name, level, entry))
      return visitAll(path, static_cast<Level>(static_cast<int>(level) + 1), entry);
    if (type == fs::file_type::regular && level == Level::Copies && name == entry.name)
      compare(path, entry);
    m_entries.push_back(entry);
  }

 private:
  // Returns false for a folder that has no place on this level.
  static bool takeName(const std::wstring& name, Level level, ArchiveEntry& entry) {
    switch (level) {
      case Level::Archive:
        return true;
      case Level::Kinds:
        entry.category = kindOf(name);
        return entry.category.has_value();
      case Level::Names:
        entry.name = name;
        return true;
      case Level::Versions:
        if (isMd5(name))
          entry.folderMd5 = name;
        return isMd5(name);
      case Level::Copies:
        break;
    }
    return false;
  }

  void visitAll(const fs::path& folder, Level level, ArchiveEntry entry) {
    std::vector<fs::path> paths;
    std::error_code error;
    for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error))
      paths.push_back(at->path());
    std::sort(paths.begin(), paths.end());
    for (const fs::path& path : paths) visit(path, level, entry);
    if (!error)
      return;
    entry.state = CopyState::Unreadable;
    m_entries.push_back(entry);
  }

  static void readSize(const fs::path& path, ArchiveEntry& entry) {
    std::error_code error;
    const std::uintmax_t size = fs::file_size(path, error);
    if (!error)
      entry.size = size;
  }

  void compare(const fs::path& path, ArchiveEntry& entry) {
    const ObjectPtr<IChecksum> checksum =
        m_calculator->calculate(fromNativePath(path).c_str(), QV_2_9::ctMD5);
    if (checksum)
      entry.md5 = checksum->getValue();
    entry.state = !checksum                      ? CopyState::Unreadable
                  : entry.md5 == entry.folderMd5 ? CopyState::Agrees
                                                 : CopyState::Differs;
  }

  ObjectPtr<IChecksumCalculator> m_calculator = IChecksumCalculator::create();
  std::vector<ArchiveEntry> m_entries;
};

}  // namespace

std::vector<ArchiveEntry> listArchive(const std::wstring& resultDirectory) {
  Walk walk;
  walk.visit(toNativePath(resultDirectory) / toNativePath(kArchiveFolder), Level::Archive, {});
  return walk.take();
}

}  // namespace quiver_tool
