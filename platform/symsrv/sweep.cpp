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

}  // namespace

void sweepTemporaries(const DirectoryStore& store, std::chrono::seconds age) {
  if (!takeTurn(store))
    return;
  std::error_code error;
  fs::recursive_directory_iterator entry(
      standardPath(store.root()), fs::directory_options::skip_permission_denied, error);
  const auto end = std::chrono::steady_clock::now() + kPatience;
  int entries = 0;
  for (; !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
    if (++entries > kMaxEntries || std::chrono::steady_clock::now() > end)
      return;
    std::error_code ignored;
    if (entry.depth() >= kMaxDepth)
      entry.disable_recursion_pending();
    const bool isFile = fs::is_regular_file(entry->symlink_status(ignored));
    if (isFile && isTemporaryName(fileNameOf(entry->path())) && isOlder(entry->path(), age))
      fs::remove(entry->path(), ignored);
  }
}

}  // namespace symsrv_1_0::internal
