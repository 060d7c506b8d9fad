// Files that are there and cannot be read, whoever asks.

#pragma once

#include <cstdint>
#include <filesystem>

namespace quiver_test {

/// Makes such a file: a named pipe without a writer, or on Windows a file that is held open and
/// shared with nobody. It can be examined while this object lives.
class UnreadableFile final {
 public:
  /// Throws when the system refuses.
  explicit UnreadableFile(const std::filesystem::path& path);
  ~UnreadableFile();

  UnreadableFile(UnreadableFile&& other) noexcept;
  UnreadableFile& operator=(UnreadableFile&&) = delete;

 private:
  std::intptr_t m_handle = 0;  // 0: nothing is held
};

}  // namespace quiver_test
