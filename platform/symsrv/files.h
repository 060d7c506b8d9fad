// Files and folders of stores, as the system has them. Names are UTF-8 texts; a text that can name
// nothing on this system names nothing.
//
// A file that is made gets its name last: it is gathered under a name of its own in the folder that
// it belongs to, and renamed when it is complete and on the disk. Whoever loses a race loses
// nothing, since names tell contents. Nothing here waits for a device or a pipe.

#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "symsrv/byte_source.h"

namespace symsrv_1_0::internal {

/// Whether a link may stand for a file or a folder. In caches it may not: others may write there.
enum class Links { kFollow, kRefuse };

/// A regular file, open for reading.
class FileSource final : public IByteSource {
 public:
  /// Returns null when there is no such file, or none that can be read.
  static std::unique_ptr<FileSource> open(const std::string& path, Links links = Links::kFollow);

  explicit FileSource(std::intptr_t handle, std::uint64_t size) : m_handle(handle), m_size(size) {}
  ~FileSource();

  FileSource(const FileSource&) = delete;
  FileSource& operator=(const FileSource&) = delete;

  std::uint64_t size() const override { return m_size; }
  bool read(std::uint64_t offset, void* to, std::size_t count) override;

 private:
  std::intptr_t m_handle;
  std::uint64_t m_size;
};

class Folder;

/// A file in the making. What was written can be read at once. Removed unless published.
class NewFile final : public IByteSource, public IByteSink {
 public:
  NewFile(std::shared_ptr<Folder> folder, std::string name, std::intptr_t handle);
  ~NewFile();

  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  std::uint64_t size() const override { return m_size; }
  bool read(std::uint64_t offset, void* to, std::size_t count) override;

  /// Adds to the end. Returns false when the system did not take everything.
  bool write(const void* bytes, std::size_t count) override;

  /// Returns true when the system did not read what was written.
  bool isUnreadable() const { return m_isUnreadable; }

  /// Takes everything back, to begin anew.
  bool clear();

  /// Sends the content to the disk and gives the file its name, in place of what has it. Returns
  /// false when that failed; the file is then as good as never made.
  bool publish(const std::string& name);

 private:
  friend class Folder;

  std::shared_ptr<Folder> m_folder;
  std::string m_name;  // empty once published
  std::intptr_t m_handle;
  std::uint64_t m_size = 0;
  bool m_isUnreadable = false;
};

/// A folder below the root of a store.
class Folder final : public std::enable_shared_from_this<Folder> {
 public:
  enum class Missing { kRefuse, kMake };
  /// Who may enter what is made: everybody as the user's settings have it, or the user alone.
  enum class Access { kUsual, kPrivate };

  /// Returns null when there is no such folder. `names` are ordinary names; below the root, links
  /// are treated as `links` says.
  static std::shared_ptr<Folder> open(const std::string& root,
                                      const std::vector<std::string>& names,
                                      Missing missing,
                                      Links links,
                                      Access access = Access::kUsual);

  Folder(std::string path, std::intptr_t handle, Access access)
      : m_path(std::move(path)), m_handle(handle), m_access(access) {}
  ~Folder();

  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  /// Removes the folders of `names`, innermost first, as far as they are empty.
  static void removeEmpty(const std::string& root, std::vector<std::string> names);

  std::string pathOf(const std::string& name) const;
  std::unique_ptr<FileSource> read(const std::string& name, Links links) const;
  bool remove(const std::string& name) const;

  /// Returns null when no file can be made. `name` is what it will be called, for the eye.
  std::unique_ptr<NewFile> create(const std::string& name);

 private:
  friend class NewFile;

  std::string m_path;
  std::intptr_t m_handle;  // of a system that opens files relative to a folder
  Access m_access;
};

/// Returns true for a path that names the same thing wherever it is said.
bool isAbsolutePath(const std::string& path);

/// Returns an empty text when the folder is the user's own and nobody else may write there, or when
/// it does not exist yet; otherwise what speaks against it.
std::string reasonNotPrivate(const std::string& path);

/// Returns the path for the standard library.
std::filesystem::path standardPath(const std::string& path);

/// Returns the paths of what lies in a folder; empty when it cannot be read. The iterators of the
/// standard library end the process when they lack memory.
std::vector<std::string> pathsIn(const std::string& folder);

/// Returns the last name of a path.
std::string fileNameOf(const std::filesystem::path& path);

/// Returns a name for a file that will be called `name`: with the process and a random number.
std::string temporaryName(const std::string& name);

/// Returns true for a name that `temporaryName` may have made.
bool isTemporaryName(std::string_view name);

}  // namespace symsrv_1_0::internal
