// A file system in memory for the time of a test.

#pragma once

#include <string>

#include "support/native_path.h"

namespace quiver_test {

/// Mounts one on a directory, in a mount namespace that this process gets for itself: nobody else
/// sees it, and it goes with the process even when that crashes.
class ScopedFileSystem final {
 public:
  /// `options` as mount takes them: "size=1m", "nr_inodes=10".
  ScopedFileSystem(const NativePath& directory, const std::string& options);
  ~ScopedFileSystem();

  ScopedFileSystem(const ScopedFileSystem&) = delete;
  ScopedFileSystem& operator=(const ScopedFileSystem&) = delete;

  /// Returns why there is none: mounting needs rights. Empty when there is one.
  const std::string& refusal() const { return m_refusal; }

  /// Each returns false when the system refuses.
  bool setOptions(const std::string& options);
  bool setReadOnly(bool readOnly);

 private:
  std::filesystem::path m_directory;
  std::string m_refusal;
};

}  // namespace quiver_test
