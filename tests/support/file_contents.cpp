// See file_contents.h.

#include "support/file_contents.h"

#include <fstream>
#include <iterator>

namespace quiver_test {

std::string contentOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> entriesOf(const std::filesystem::path& directory) {
  std::vector<std::string> names;
  for (const std::filesystem::directory_entry& entry :
       std::filesystem::directory_iterator(directory))
    names.push_back(entry.path().filename().string());
  return names;
}

}  // namespace quiver_test
