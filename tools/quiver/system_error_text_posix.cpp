#include <cerrno>
#include <system_error>

#include "system_error_text.h"

namespace quiver_tool {

std::string systemErrorText() {
  return std::generic_category().message(errno);
}

}  // namespace quiver_tool
