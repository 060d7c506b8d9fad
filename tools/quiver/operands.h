// Files that are named on the command line without an option in front.

#pragma once

#include <string>
#include <vector>

namespace quiver_tool {

/// Marks what is no option, behind the word of a command that takes lists of files, so that the
/// option parser takes any number of files whatever their names: it would split "[a,b]" and run
/// "find". Other command lines stay as they are. `textOf` and `textsOf` take the marks out again.
void markOperands(std::vector<std::string>& arguments);

/// Takes the marks out of a text of the option parser.
std::string withoutMarks(std::string text);

}  // namespace quiver_tool
