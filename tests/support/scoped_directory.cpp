// The current directory, through the standard file library.

#include "support/scoped_directory.h"

#include <system_error>

namespace quiver_test {

ScopedDirectory::ScopedDirectory(const NativePath& dir)
    : m_former(std::filesystem::current_path()) {
  std::filesystem::current_path(dir.get());
}

ScopedDirectory::~ScopedDirectory() {
  std::error_code ignored;
  std::filesystem::current_path(m_former, ignored);
}

}  // namespace quiver_test
