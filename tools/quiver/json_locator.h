// Where in a JSON text something is: for complaints about values that a person wrote.

#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace quiver_tool {

struct JsonFault {
  std::size_t offset = 0;  ///< Bytes before what is wrong.
  std::string pointer;     ///< Of the value; empty for the document.
  std::string reason;
};

/// Returns the first place where the text is no JSON, where an object has a key for the second
/// time, or where values lie too deep within each other.
std::optional<JsonFault> findSyntaxFault(std::string_view text);

/// Returns where the value at `pointer` begins in a text that is JSON; its length when there is
/// none.
std::size_t offsetOfValue(std::string_view text, const std::string& pointer);

/// Returns "line 3, column 14": both from 1, columns in characters.
std::string lineAndColumn(std::string_view text, std::size_t offset);

/// Returns the pointer to an entry of what `pointer` leads to.
std::string pointerTo(const std::string& pointer, const std::string& key);

}  // namespace quiver_tool
