// Walks a store.

#include "symsrv/sweep.h"

#include <filesystem>

#include "symsrv/files.h"

namespace symsrv_1_0::internal {
namespace {

namespace fs = std::filesystem;

constexpr int kMaxDepth = 4;  // two tiers: na/name/ID/name
constexpr int kMaxEntries = 200000;
constexpr std::chrono::hours kBetweenSweeps{24};
constexpr std::chrono::seconds kPatience{2};  // somebody waits for a file; stores may be far away
const char* const kStamp = "swept";

bool isOlder(const fs::path& path, std::chrono::seconds age) {
  std::error_code error;
  const fs::file_time_type time = fs::last_write_time(path, error);
  return !error && fs::file_time_type::clock::now() - time > age;
}

/// Returns false when there is no such store yet, and when it was swept lately or cannot be.
bool takeTurn(const DirectoryStore& store) {
  if (!Folder::open(store.root(), {}, Folder::Missing::kRefuse, Links::kRefuse))
    return false;
  const std::shared_ptr<Folder> folder = store.notes(Folder::Missing::kMake);
  if (!folder)
    return false;
  std::error_code error;
  const fs::path stamp = standardPath(folder->pathOf(kStamp));
  if (fs::exists(stamp, error) && !isOlder(stamp, kBetweenSweeps))
    return false;
  const std::unique_ptr<NewFile> file = folder->create(kStamp);
  return file && file->publish(kStamp);
}

/// Removes a file that is left over. Returns what there was.
fs::file_type sweepOne(const fs::path& path, std::chrono::seconds age) {
  std::error_code error;
  const fs::file_type type = fs::symlink_status(path, error).type();
  if (type == fs::file_type::regular && isTemporaryName(fileNameOf(path)) && isOlder(path, age))
    fs::remove(path, error);
  return type;
}

}  // namespace

void sweepTemporaries(const DirectoryStore& store, std::chrono::seconds age) {
  if (!takeTurn(store))
    return;
  std::vector<std::pair<std::string, int>> folders = {{store.root(), 0}};
  const auto end = std::chrono::steady_clock::now() + kPatience;
  for (int entries = 0; !folders.empty();) {
    const auto [folder, depth] = std::move(folders.back());
    folders.pop_back();
    for (const std::string& path : pathsIn(folder)) {
      if (++entries > kMaxEntries || std::chrono::steady_clock::now() > end)
        return;
      const fs::file_type type = sweepOne(standardPath(path), age);
      if (type == fs::file_type::directory && depth < kMaxDepth)
        folders.emplace_back(path, depth + 1);
    }
  }
}

}  // namespace symsrv_1_0::internal
