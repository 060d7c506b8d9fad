// Trees of a test, through the standard file library.

#include "support/temp_tree.h"

#include <chrono>
#include <fstream>
#include <random>
#include <stdexcept>

namespace fs = std::filesystem;

namespace quiver_test {
namespace {

fs::path makeRoot() {
  const fs::path base = fs::canonical(fs::temp_directory_path());
  std::random_device random;
  for (;;) {
    fs::path root = base / ("quiver-test-" + std::to_string(random()));
    if (fs::create_directory(root))
      return root;
  }
}

void makeWritable(const fs::path& path) {
  std::error_code ignored;
  fs::permissions(path, fs::perms::owner_all, fs::perm_options::add, ignored);
}

bool isRealDirectory(const fs::directory_entry& entry) {
  std::error_code ignored;
  return entry.is_directory(ignored) && !entry.is_symlink(ignored);
}

std::vector<fs::directory_entry> entriesOf(const fs::path& dir) {
  std::error_code error;
  std::vector<fs::directory_entry> entries;
  for (fs::directory_iterator it(dir, error), end; !error && it != end; it.increment(error))
    entries.push_back(*it);
  return entries;
}

// Removes `dir` after moving its directories up beside it, so that no path ever grows.
void dissolve(const fs::path& root, const fs::path& dir, std::size_t& moved) {
  std::error_code ignored;
  makeWritable(dir);
  for (const fs::directory_entry& entry : entriesOf(dir)) {
    if (!isRealDirectory(entry)) {
      if (!entry.is_symlink(ignored))
        makeWritable(entry.path());
      fs::remove(entry.path(), ignored);
      continue;
    }
    makeWritable(entry.path());
    fs::rename(entry.path(), root / (".moved-" + std::to_string(moved++)), ignored);
  }
  fs::remove(dir, ignored);
}

void removeTree(const fs::path& root) {
  const fs::path heap = root.string() + ".removing";
  std::error_code ignored;
  fs::create_directory(heap, ignored);
  makeWritable(root);
  std::size_t moved = 0;
  dissolve(heap, root, moved);
  for (std::size_t next = 0; next < moved; ++next)
    dissolve(heap, heap / (".moved-" + std::to_string(next)), moved);
  fs::remove(heap, ignored);
}

}  // namespace

TempTree::TempTree() : m_root(makeRoot()) {}

TempTree::~TempTree() {
  m_unreadable.clear();
  removeTree(m_root);
}

std::wstring TempTree::path(const NativePath& name) const {
  return toWide((m_root / name.get()).make_preferred());
}

fs::path TempTree::prepare(const NativePath& name) const {
  if (name.get().has_root_path())
    throw std::invalid_argument("names in a tree are relative: " + name.get().string());
  fs::path full = m_root / name.get();
  fs::create_directories(full.parent_path());
  return full;
}

std::wstring TempTree::addFile(const NativePath& name, std::string_view content) {
  std::ofstream file;
  file.exceptions(std::ios::failbit | std::ios::badbit);
  file.open(prepare(name), std::ios::binary | std::ios::trunc);
  file.write(content.data(), static_cast<std::streamsize>(content.size()));
  file.close();
  return path(name);
}

std::wstring TempTree::addSparseFile(const NativePath& name, std::uintmax_t size) {
  addFile(name);
  fs::resize_file(m_root / name.get(), size);
  return path(name);
}

std::wstring TempTree::addDirectory(const NativePath& name) {
  fs::create_directories(prepare(name));
  return path(name);
}

std::wstring TempTree::addUnreadableFile(const NativePath& name) {
  m_unreadable.emplace_back(prepare(name));
  return path(name);
}

std::wstring TempTree::addLink(const NativePath& name, const NativePath& target) {
  fs::create_symlink(target.get(), prepare(name));
  return path(name);
}

// From the inside out: each round wraps what is there already into one more directory.
void TempTree::addChain(const NativePath& name, std::size_t depth, const NativePath& file) {
  const fs::path inner = ".chain-inner";
  const fs::path outer = ".chain-outer";
  addFile(inner / file.get());
  for (std::size_t level = 1; level < depth; ++level) {
    addDirectory(outer);
    fs::rename(m_root / inner, m_root / outer / name.get());
    fs::rename(m_root / outer, m_root / inner);
  }
  fs::rename(m_root / inner, prepare(name));
}

void TempTree::setModificationTime(const NativePath& name,
                                   std::int64_t seconds,
                                   std::int64_t nanoseconds) {
  using namespace std::chrono;
  const sys_time<std::chrono::nanoseconds> time{std::chrono::seconds(seconds) +
                                                std::chrono::nanoseconds(nanoseconds)};
  fs::last_write_time(m_root / name.get(), file_clock::from_sys(time));
}

}  // namespace quiver_test
