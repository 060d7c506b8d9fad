// Checksums of real files that were read before.

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <linux/magic.h>
#include <string>
#include <sys/mman.h>
#include <sys/vfs.h>
#include <thread>
#include <unistd.h>

#include <gtest/gtest.h>

#include "paku/file.h"
#include "paku/file_descriptor_posix.h"
#include "paku/md5_memo.h"
#include "paku/trusted_file_system_posix.h"

#include "support/temp_tree.h"

namespace fs = std::filesystem;

namespace PAKU_3_1::internal {
namespace {

/// Files of a test have not rested; here they need not.
class RememberedMd5Posix : public testing::Test {
 protected:
  RememberedMd5Posix() {
    Md5Memo::instance().clear();
    Md5Memo::instance().setRest(std::chrono::nanoseconds(0));
  }
  ~RememberedMd5Posix() override {
    Md5Memo::instance().clear();
    Md5Memo::instance().setRest(Md5Memo::kRest);
  }

  /// Longer than a tick of the clock that files get their times from.
  static void rest() { std::this_thread::sleep_for(std::chrono::milliseconds(50)); }

  std::wstring md5(const char* name) const {
    return File(Filename(m_tree.path(name))).md5checksum().text();
  }
  bool isOnADisk(const char* name) const {
    const FileDescriptor file(
        open(quiver_test::NativePath(m_tree.path(name)).get().c_str(), O_RDONLY | O_CLOEXEC));
    return file && datesAllContent(file.get());
  }
  static std::size_t hits() { return Md5Memo::instance().hits(); }

  quiver_test::TempTree m_tree;
};

TEST_F(RememberedMd5Posix, IsUsedForAFileThatWasReadBefore) {
  m_tree.addFile("a", "new");
  if (!isOnADisk("a"))
    GTEST_SKIP() << "needs a directory for temporary files on the file system of a disk";
  rest();
  const std::size_t before = hits();
  EXPECT_EQ(md5("a"), L"22af645d1859cb5ca6da0c484f1f37ea");
  EXPECT_EQ(hits(), before);
  EXPECT_EQ(md5("a"), L"22af645d1859cb5ca6da0c484f1f37ea");
  EXPECT_EQ(hits(), before + 1);
}

TEST_F(RememberedMd5Posix, IsNotUsedForANewContentOfTheSameSizeAndTime) {
  m_tree.addFile("a", "new");
  const fs::file_time_type time = fs::last_write_time(m_tree.path("a"));
  rest();
  EXPECT_EQ(md5("a"), L"22af645d1859cb5ca6da0c484f1f37ea");
  rest();
  m_tree.addFile("a", "old");
  fs::last_write_time(m_tree.path("a"), time);
  EXPECT_EQ(md5("a"), L"149603e6c03516362a8da23f624db945");
}

TEST_F(RememberedMd5Posix, IsNotUsedForAnotherFileOfThatName) {
  m_tree.addFile("a", "new");
  m_tree.addFile("b", "old");
  fs::last_write_time(m_tree.path("b"), fs::last_write_time(m_tree.path("a")));
  rest();
  EXPECT_EQ(md5("a"), L"22af645d1859cb5ca6da0c484f1f37ea");
  fs::rename(m_tree.path("b"), m_tree.path("a"));
  EXPECT_EQ(md5("a"), L"149603e6c03516362a8da23f624db945");
}

TEST_F(RememberedMd5Posix, IsThatOfTheContentUnderAnyName) {
  m_tree.addFile("a", "new");
  rest();
  md5("a");
  fs::rename(m_tree.path("a"), m_tree.path("b"));
  EXPECT_EQ(md5("b"), L"22af645d1859cb5ca6da0c484f1f37ea");
  EXPECT_EQ(md5("a"), L"");
}

/// A file of three bytes in memory, and a mapping through which it is written.
class MappedMemoryFile final {
 public:
  MappedMemoryFile() {
    m_fd = mkstemp(m_path);
    if (m_fd < 0 || pwrite(m_fd, "new", kSize, 0) != kSize)
      return;
    void* const bytes = mmap(nullptr, kSize, PROT_READ | PROT_WRITE, MAP_SHARED, m_fd, 0);
    m_bytes = bytes == MAP_FAILED ? nullptr : static_cast<char*>(bytes);
  }
  ~MappedMemoryFile() {
    if (m_bytes)
      munmap(m_bytes, kSize);
    if (m_fd < 0)
      return;
    close(m_fd);
    unlink(m_path);
  }

  MappedMemoryFile(const MappedMemoryFile&) = delete;
  MappedMemoryFile& operator=(const MappedMemoryFile&) = delete;

  bool isInMemory() const {
    struct statfs status {};
    return m_bytes && fstatfs(m_fd, &status) == 0 && status.f_type == TMPFS_MAGIC;
  }
  std::wstring path() const { return std::wstring(m_path, m_path + std::strlen(m_path)); }
  /// `text` has three characters.
  void write(const char* text) { std::memcpy(m_bytes, text, kSize); }

 private:
  static constexpr int kSize = 3;

  char m_path[32] = "/dev/shm/quiver-XXXXXX";
  int m_fd = -1;
  char* m_bytes = nullptr;
};

TEST_F(RememberedMd5Posix, IsNotUsedForAFileInMemoryThatIsWrittenThroughAMapping) {
  MappedMemoryFile file;
  if (!file.isInMemory())
    GTEST_SKIP() << "needs a tmpfs under /dev/shm";
  const auto md5OfFile = [&file] { return File(Filename(file.path())).md5checksum().text(); };
  file.write("new");
  rest();
  EXPECT_EQ(md5OfFile(), L"22af645d1859cb5ca6da0c484f1f37ea");
  file.write("old");
  EXPECT_EQ(md5OfFile(), L"149603e6c03516362a8da23f624db945");
}

TEST_F(RememberedMd5Posix, NeedsAFileThatRested) {
  Md5Memo::instance().setRest(Md5Memo::kRest);
  m_tree.addFile("a", "new");
  md5("a");
  EXPECT_EQ(Md5Memo::instance().size(), 0u);
}

}  // namespace
}  // namespace PAKU_3_1::internal
