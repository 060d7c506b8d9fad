#include "operands.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace quiver_tool {
namespace {

constexpr std::array<std::string_view, 3> kCommandsWithLists = {"archive", "identify", "record"};

// No argument of a program can hold it.
constexpr char kMark = '\0';

bool takesLists(const std::string& command) {
  return std::ranges::find(kCommandsWithLists, command) != kCommandsWithLists.end();
}

}  // namespace

void markOperands(std::vector<std::string>& arguments) {
  if (arguments.empty() || !takesLists(arguments.front()))
    return;
  std::vector<std::string> marked{arguments.front()};
  bool isOption = true;
  for (std::size_t i = 1; i < arguments.size(); ++i) {
    const std::string& argument = arguments[i];
    if (isOption && argument == "--")
      isOption = false;
    else if (isOption && argument.starts_with('-'))
      marked.push_back(argument);
    else
      marked.push_back(kMark + argument);
  }
  arguments = marked;
}

std::string withoutMarks(std::string text) {
  std::erase(text, kMark);
  return text;
}

}  // namespace quiver_tool
