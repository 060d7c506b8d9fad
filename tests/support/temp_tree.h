// A directory of a test's own, removed with everything in it when the test ends.
//
//   TempTree tree;
//   tree.addFile("sub/a.dll", "content");
//   finder.add(tree.root().c_str());
//   EXPECT_EQ(found, tree.path("sub/a.dll"));
//
// Names are relative to the root; missing directories on the way are made. Each `add` returns the
// full path of what it made. What cannot be made throws, which fails the test.

#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "support/native_path.h"
#include "support/unreadable_file.h"

namespace quiver_test {

class TempTree final {
 public:
  TempTree();
  ~TempTree();

  TempTree(const TempTree&) = delete;
  TempTree& operator=(const TempTree&) = delete;

  /// Returns the root without a trailing separator; no part of it is a symbolic link.
  std::wstring root() const { return toWide(m_root); }
  std::wstring path(const NativePath& name) const;

  std::wstring addFile(const NativePath& name, std::string_view content = "");
  /// Adds a file of zeros that takes no space on disk.
  std::wstring addSparseFile(const NativePath& name, std::uintmax_t size);
  std::wstring addDirectory(const NativePath& name);
  /// Adds a file that can be examined, but not read while the tree is there; see
  /// unreadable_file.h.
  std::wstring addUnreadableFile(const NativePath& name);
  /// Adds a symbolic link. `target` is kept as given and need not exist.
  std::wstring addLink(const NativePath& name, const NativePath& target);
  /// Adds `depth` directories inside each other, all called `name`, and `file` in the innermost.
  /// The whole may be deeper than a path can say.
  void addChain(const NativePath& name, std::size_t depth, const NativePath& file);

  /// `seconds` since 1970-01-01 UTC, negative before, plus `nanoseconds`.
  void setModificationTime(const NativePath& name,
                           std::int64_t seconds,
                           std::int64_t nanoseconds = 0);

 private:
  std::filesystem::path prepare(const NativePath& name) const;

  std::filesystem::path m_root;
  std::vector<UnreadableFile> m_unreadable;
};

}  // namespace quiver_test
