#include "recorded_numbers.h"

#include <charconv>
#include <chrono>
#include <filesystem>
#include <limits>
#include <optional>
#include <system_error>

#include "text_encoding.h"
#include "usage_error.h"

namespace quiver_tool {
namespace {

// Nothing for a text that is no whole number, or one that does not fit.
std::optional<std::int64_t> numberIn(const std::wstring& text) {
  const std::string bytes = toBytes(text);
  const char* end = bytes.data() + bytes.size();
  std::int64_t number = 0;
  const auto [stop, error] = std::from_chars(bytes.data(), end, number);
  if (error != std::errc() || stop != end)
    return std::nullopt;
  return number;
}

std::optional<std::int64_t> modificationTimeOf(const std::wstring& path) {
  using namespace std::chrono;
  std::error_code error;
  if (!std::filesystem::is_regular_file(toNativePath(path), error))
    return std::nullopt;
  const std::filesystem::file_time_type time =
      std::filesystem::last_write_time(toNativePath(path), error);
  if (error)
    return std::nullopt;
  return floor<seconds>(file_clock::to_sys(time)).time_since_epoch().count();
}

}  // namespace

std::int64_t parseModificationTime(const std::wstring& text) {
  std::optional<std::int64_t> time = numberIn(text);
  if (!time)
    time = modificationTimeOf(text);
  if (!time)
    throw UsageError("--mtime: '" + toBytes(text) +
                     "' is neither a number of seconds since 1970 nor a file");
  if (*time == 0)
    throw UsageError("--mtime: time 0 counts as not recorded and cannot be checked");
  return *time;
}

std::int64_t parseSize(const std::wstring& text) {
  const std::optional<std::int64_t> size = numberIn(text);
  if (!size || *size < std::numeric_limits<std::int32_t>::min())
    throw UsageError("--size: '" + toBytes(text) + "' is no number of bytes");
  const auto recorded = static_cast<std::int32_t>(static_cast<std::uint32_t>(*size));
  if (recorded == 0)
    throw UsageError(
        "--size: sizes are recorded by their low 32 bits, and 0 counts as not recorded: " +
        toBytes(text) + " cannot be checked");
  return recorded;
}

}  // namespace quiver_tool
