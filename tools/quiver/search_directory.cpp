#include "search_directory.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include "text_encoding.h"
#include "usage_error.h"

namespace quiver_tool {
namespace {

using QV_2_9::search_category_t;

constexpr std::wstring_view kRecursive = L"recursive";
constexpr std::wstring_view kHigh = L"high";

struct KindPrefix {
  std::wstring_view text;
  search_category_t category;
};

constexpr KindPrefix kKindPrefixes[] = {
    {L"bin:", QV_2_9::scBinaryFiles},
    {L"sym:", QV_2_9::scSymbolFiles},
    {L"src:", QV_2_9::scSourceFiles},
    {L"all:", QV_2_9::scAllFiles},
};

// Takes a leading kind off `text`.
std::optional<search_category_t> takeKind(std::wstring_view& text) {
  for (const KindPrefix& kind : kKindPrefixes) {
    if (!text.starts_with(kind.text))
      continue;
    text.remove_prefix(kind.text.size());
    return kind.category;
  }
  return std::nullopt;
}

// Takes known words off the end of `text`. Returns true when an empty word said where the path
// ends.
bool takeFlags(std::wstring_view& text, SearchDirectory& dir) {
  for (;;) {
    const std::size_t comma = text.rfind(L',');
    if (comma == std::wstring_view::npos)
      return false;
    const std::wstring_view word = text.substr(comma + 1);
    if (!word.empty() && word != kRecursive && word != kHigh)
      return false;
    text = text.substr(0, comma);
    if (word.empty())
      return true;
    (word == kRecursive ? dir.isRecursive : dir.isHighPriority) = true;
  }
}

std::size_t editDistance(std::wstring_view a, std::wstring_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t replaced = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
      diagonal = row[j];
      row[j] = std::min({row[j] + 1, row[j - 1] + 1, replaced});
    }
  }
  return row[b.size()];
}

std::wstring toLower(std::wstring_view text) {
  std::wstring lower(text);
  for (wchar_t& c : lower) {
    if (c >= L'A' && c <= L'Z')
      c = static_cast<wchar_t>(c - L'A' + L'a');
  }
  return lower;
}

bool looksLikeFlag(std::wstring_view word) {
  const std::wstring lower = toLower(word);
  for (const std::wstring_view flag : {kRecursive, kHigh}) {
    const bool isPrefix = lower.size() >= 3 && flag.starts_with(lower);
    if (isPrefix || lower.starts_with(flag) || editDistance(lower, flag) <= flag.size() / 4)
      return true;
  }
  return lower == L"recurse" || lower == L"recursion";
}

// A comma belongs to the path unless everything speaks for a mistyped flag.
void rejectUnknownFlag(std::wstring_view path, const IsDirectory& isDirectory) {
  const std::size_t comma = path.rfind(L',');
  if (comma == std::wstring_view::npos)
    return;
  const std::wstring_view word = path.substr(comma + 1);
  if (word.find_first_of(L"/\\") != std::wstring_view::npos || isDirectory(std::wstring(path)))
    return;
  if (!looksLikeFlag(word) && !isDirectory(std::wstring(path.substr(0, comma))))
    return;
  throw UsageError("--dir: unknown flag '" + toBytes(word) +
                   "'; the flags are 'recursive' and 'high' (if it belongs to the path, write '" +
                   toBytes(path) + ",')");
}

}  // namespace

bool serves(const SearchDirectory& dir, search_category_t category) {
  return dir.category == category || dir.category == QV_2_9::scAllFiles;
}

SearchDirectory parseSearchDirectory(const std::wstring& argument,
                                     search_category_t sought,
                                     const IsDirectory& isDirectory) {
  std::wstring_view rest = argument;
  SearchDirectory dir;
  dir.category = takeKind(rest).value_or(sought);
  const bool isPathEndMarked = takeFlags(rest, dir);
  if (rest.empty())
    throw UsageError("--dir: '" + toBytes(argument) + "' names no directory");
  if (!isPathEndMarked)
    rejectUnknownFlag(rest, isDirectory);
  dir.path = rest;
  return dir;
}

}  // namespace quiver_tool
