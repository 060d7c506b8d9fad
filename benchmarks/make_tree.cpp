// Makes the trees that the benchmarks search: source trees as they look, with every name once.
//
// Directories have twelve sub-directories at most, files are spread evenly. The same arguments give
// the same tree.

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kChildren = 12;
const char* const kFolders[kChildren] = {
    "src", "include", "lib", "test", "core", "net", "gui", "tools", "docs", "base", "impl", "util"};
const char* const kExtensions[] = {"cpp", "h", "c", "py"};

std::vector<fs::path> makeDirectories(const fs::path& root, std::size_t count) {
  std::vector<fs::path> directories = {root};
  fs::create_directories(root);
  for (std::size_t i = 0; directories.size() < count; ++i) {
    for (std::size_t k = 0; k < kChildren && directories.size() < count; ++k) {
      const std::string name = kFolders[k] + ('_' + std::to_string(directories.size() % 97));
      directories.push_back(directories[i] / name);
      fs::create_directory(directories.back());
    }
  }
  return directories;
}

void makeFiles(const std::vector<fs::path>& directories, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    const std::string name = "source_" + std::to_string(i) + '.' + kExtensions[i % 4];
    std::ofstream(directories[i * 7919 % directories.size()] / name);
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    std::fputs("usage: make_tree ROOT DIRECTORIES FILES\n", stderr);
    return 2;
  }
  makeFiles(makeDirectories(argv[1], std::strtoul(argv[2], nullptr, 10)),
            std::strtoul(argv[3], nullptr, 10));
}
