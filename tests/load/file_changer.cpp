// Changes at random. What cannot be done now is left out: half of the ways are not there.

#include "load/file_changer.h"

#include <chrono>
#include <fstream>
#include <thread>

#include "support/native_path.h"

namespace quiver_load {
namespace {

namespace fs = std::filesystem;

constexpr int kDirectories = 5;
constexpr std::chrono::microseconds kPause{500};

void write(const fs::path& path, std::string_view content) {
  std::ofstream(path, std::ios::binary | std::ios::trunc) << content;
}

}  // namespace

FileChanger::FileChanger(const Load& load, int area, unsigned seed)
    : m_load(load),
      m_area(quiver_test::NativePath(load.places.path("moving/" + std::to_string(area))).get()),
      m_staging(quiver_test::NativePath(load.places.path("staging/" + std::to_string(area))).get()),
      m_random(seed) {}

void FileChanger::run() {
  while (!m_load.isOver.load(std::memory_order_relaxed)) {
    changeOnce();
    std::this_thread::sleep_for(kPause);
  }
}

void FileChanger::changeOnce() {
  switch (m_random() % 16) {
    case 0:
      return removeDirectory();
    case 1:
      return renameDirectory();
    case 2:
    case 3:
      return makeDirectory();
    case 4:
      return makeLink();
    case 5:
      return makeFileInPieces();
    case 6:
    case 7:
      return removeFile();
    case 8:
    case 9:
      return renameFile();
    default:
      return makeFile();
  }
}

void FileChanger::count(Work work, const std::error_code& error) {
  if (!error)
    m_load.counts.add(work);
}

std::string FileChanger::anyKind() {
  constexpr const char* kKinds[] = {"right", "wrong", "both"};
  return kKinds[m_random() % std::size(kKinds)];
}

std::string FileChanger::anyName() {
  return Places::movingName(static_cast<int>(m_random() % Places::kMovingNames));
}

fs::path FileChanger::directory(const std::string& kind) {
  fs::path path = m_area / kind / ("d" + std::to_string(m_random() % kDirectories));
  return isTurn(2) ? path : path / ("s" + std::to_string(m_random() % 2));
}

fs::path FileChanger::file(const std::string& kind) {
  return directory(kind) / anyName();
}

/// The file gets its name with its content.
void FileChanger::makeFile() {
  const std::string kind = anyKind();
  const bool isRight = kind == "right" || (kind == "both" && isTurn(2));
  const fs::path written = m_staging / "file";
  write(written, isRight ? Places::kRecorded : Places::kOther);
  std::error_code error;
  fs::rename(written, file(kind), error);
  count(Work::kFileMade, error);
}

/// The recorded content, which is another one until it is complete.
void FileChanger::makeFileInPieces() {
  std::ofstream out(file("both"), std::ios::binary | std::ios::trunc);
  out << Places::kRecorded.substr(0, 5) << std::flush;
  out << Places::kRecorded.substr(5) << std::flush;
  if (out)
    m_load.counts.add(Work::kFileMade);
}

void FileChanger::removeFile() {
  std::error_code error;
  if (fs::remove(file(anyKind()), error))
    count(Work::kFileRemoved, error);
}

void FileChanger::renameFile() {
  const std::string kind = anyKind();
  std::error_code error;
  fs::rename(file(kind), file(kind), error);
  count(Work::kFileRenamed, error);
}

/// Now and then one that bears a file's name.
void FileChanger::makeDirectory() {
  std::error_code error;
  if (fs::create_directories(isTurn(4) ? file(anyKind()) : directory(anyKind()), error))
    count(Work::kDirectoryMade, error);
}

void FileChanger::makeLink() {
  const fs::path target = quiver_test::NativePath(m_load.places.recordedFile()).get();
  std::error_code error;
  fs::create_symlink(target, file("right"), error);
  count(Work::kFileMade, error);
  fs::create_directory_symlink(target.parent_path(), directory("right") / "link", error);
  count(Work::kFileMade, error);
}

void FileChanger::removeDirectory() {
  std::error_code error;
  if (fs::remove_all(isTurn(2) ? directory(anyKind()) : file(anyKind()), error) > 0)
    count(Work::kDirectoryRemoved, error);
}

void FileChanger::renameDirectory() {
  const std::string kind = anyKind();
  std::error_code error;
  fs::rename(directory(kind), directory(kind), error);
  count(Work::kDirectoryRenamed, error);
}

}  // namespace quiver_load
