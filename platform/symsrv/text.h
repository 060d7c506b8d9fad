// Small questions about texts. All texts inside this module are UTF-8, whatever the system.

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace symsrv_1_0::internal {

/// Writes a number with at least `digits` hexadecimal digits.
std::string upperHex(std::uint64_t value, std::size_t digits = 1);
std::string lowerHex(std::uint64_t value, std::size_t digits = 1);

/// Reads a number that is written in digits and nothing else. Nothing for one of too many digits.
std::optional<std::uint64_t> decimal(std::string_view text);

/// Writes bytes as pairs of lower-case hexadecimal digits.
std::string lowerHexBytes(std::string_view bytes);

/// Only A to Z change, in any locale.
std::string toLower(std::string_view text);
bool equalIgnoreCase(std::string_view a, std::string_view b);
bool startsWithIgnoreCase(std::string_view text, std::string_view prefix);

/// Takes blanks, tabs, line ends and NULs off both ends.
std::string_view trimmed(std::string_view text);

/// Returns true for well-formed UTF-8: no surrogates, no needlessly long forms.
bool isUtf8(std::string_view text);

/// Returns the text with control characters as \xNN, fit for a terminal: those of ASCII, and those
/// of two bytes that some terminals obey too.
std::string printable(std::string_view text);

}  // namespace symsrv_1_0::internal
