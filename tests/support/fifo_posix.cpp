// Named pipes by mkfifo.

#include <cerrno>
#include <sys/stat.h>
#include <system_error>

#include "support/fifo.h"

namespace quiver_test {

void makeFifo(const std::filesystem::path& path) {
  if (mkfifo(path.c_str(), 0600) != 0)
    throw std::system_error(errno, std::generic_category(), path.string());
}

}  // namespace quiver_test
