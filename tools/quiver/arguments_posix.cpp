#include "arguments.h"

namespace quiver_tool {

std::vector<std::string> commandLineArguments(int argc, const char* const* argv) {
  return {argv, argv + argc};
}

}  // namespace quiver_tool
