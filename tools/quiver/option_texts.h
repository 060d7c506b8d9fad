// Options whose texts stay as the user wrote them: the option parser's own list syntax would change
// directories called "{}" or "[a,b]".

#pragma once

#include <CLI/CLI.hpp>
#include <optional>
#include <string>
#include <vector>

namespace quiver_tool {

CLI::Option* addText(CLI::App& app, const char* names, const char* type, const char* description);

/// Adds an option that may be repeated.
CLI::Option* addTexts(CLI::App& app, const char* names, const char* type, const char* description);

CLI::Option* addFlag(CLI::App& app, const char* names, const char* description);

bool isGiven(const CLI::Option* option);

/// Returns nothing for an option that was not given or does not exist. Both functions throw
/// `UsageError` for an empty text.
std::optional<std::wstring> textOf(const CLI::Option* option);
std::vector<std::wstring> textsOf(const CLI::Option& option);

}  // namespace quiver_tool
