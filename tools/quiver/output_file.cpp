#include "output_file.h"

#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <system_error>

#include "symsrv/files.h"

#include "system_error_text.h"
#include "text_encoding.h"

namespace quiver_tool {
namespace {

namespace fs = std::filesystem;

using symsrv_1_0::internal::Folder;
using symsrv_1_0::internal::Links;
using symsrv_1_0::internal::NewFile;

constexpr std::size_t kMostNameBytes = 200;  // leaves room for what makes the other name unique

std::string because(const char* what) {
  return std::string(what) + ": " + systemErrorText();
}

bool isThere(const fs::path& path) {
  std::error_code ignored;
  return fs::exists(path, ignored);
}

bool isRegular(const fs::path& path) {
  std::error_code ignored;
  return fs::is_regular_file(path, ignored);
}

/// A new file beside the one that is to be written.
class FileBeside final {
 public:
  explicit FileBeside(const std::wstring& path) : m_target(toNativePath(path)) {
    std::error_code error;
    const fs::path real = fs::canonical(m_target, error);  // what a link leads to keeps its place
    if (!error)
      m_target = real;
    const fs::file_status status = fs::status(m_target, error);
    if (fs::is_regular_file(status))
      m_formerMode = status.permissions();
    create();
  }

  /// Why there is none; empty otherwise.
  const std::string& obstacle() const { return m_obstacle; }

  std::string write(std::string_view content) const {
    if (!m_file->write(content.data(), content.size()) || !m_file->publish(name()))
      return systemErrorText();
    std::error_code ignored;
    if (m_formerMode)
      fs::permissions(m_target, *m_formerMode, ignored);
    return "";
  }

 private:
  std::string name() const { return toBytes(fromNativePath(m_target.filename())); }

  void create() {
    const fs::path parent = m_target.has_parent_path() ? m_target.parent_path() : fs::path(".");
    // What was closed to others stays so until it has its former mode again.
    const Folder::Access access = m_formerMode ? Folder::Access::kPrivate : Folder::Access::kUsual;
    const std::shared_ptr<Folder> folder = Folder::open(
        toBytes(fromNativePath(parent)), {}, Folder::Missing::kRefuse, Links::kFollow, access);
    if (!folder) {
      m_obstacle = because("its directory cannot be opened");
      return;
    }
    m_file = folder->create(name().substr(0, kMostNameBytes));
    if (!m_file)
      m_obstacle = because("no file can be made in its directory");
  }

  fs::path m_target;
  std::optional<fs::perms> m_formerMode;
  std::unique_ptr<NewFile> m_file;
  std::string m_obstacle;
};

std::string writeStraight(const std::wstring& path, std::string_view content) {
  std::ofstream file(toNativePath(path), std::ios::binary);
  file.write(content.data(), static_cast<std::streamsize>(content.size()));
  file.close();
  return file ? "" : systemErrorText();
}

/// The file itself may be closed to us in a directory that is open.
std::string refusalOfRegular(const fs::path& path) {
  const std::ofstream file(path, std::ios::binary | std::ios::app);
  return file ? "" : systemErrorText();
}

}  // namespace

std::string outputObstacle(const std::wstring& path) {
  const fs::path native = toNativePath(path);
  std::error_code ignored;
  if (fs::is_directory(native, ignored))
    return "it is a directory";
  if (!native.has_filename())
    return "it names no file";
  if (isThere(native) && !isRegular(native))
    return "";
  if (isThere(native)) {
    if (const std::string refusal = refusalOfRegular(native); !refusal.empty())
      return refusal;
  }
  return FileBeside(path).obstacle();
}

std::string writeOutputFile(const std::wstring& path, std::string_view content) {
  if (const std::string obstacle = outputObstacle(path); !obstacle.empty())
    return obstacle;
  const fs::path native = toNativePath(path);
  if (isThere(native) && !isRegular(native))
    return writeStraight(path, content);
  const FileBeside file(path);
  return file.obstacle().empty() ? file.write(content) : file.obstacle();
}

bool isSameFile(const std::wstring& a, const std::wstring& b) {
  std::error_code error;
  return fs::equivalent(toNativePath(a), toNativePath(b), error) && !error;
}

}  // namespace quiver_tool
