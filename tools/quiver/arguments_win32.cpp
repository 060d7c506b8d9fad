// The words that the program was started with are UTF-16; those of `main` went through a code page.

#include <windows.h>
#include <cstddef>
#include <memory>
#include <shellapi.h>

#include "arguments.h"
#include "text_encoding.h"

namespace quiver_tool {

std::vector<std::string> commandLineArguments(int argc, const char* const* argv) {
  int count = 0;
  const std::unique_ptr<wchar_t*, decltype(&LocalFree)> words(
      CommandLineToArgvW(GetCommandLineW(), &count), &LocalFree);
  if (!words)
    return {argv, argv + argc};
  std::vector<std::string> arguments;
  for (int i = 0; i < count; ++i)
    arguments.push_back(toBytes(words.get()[static_cast<std::size_t>(i)]));
  return arguments;
}

}  // namespace quiver_tool
