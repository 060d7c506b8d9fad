#include "path_rules.h"

#include <algorithm>
#include <filesystem>

#include "quiver/search_results.h"

namespace quiver_tool {
namespace {

wchar_t lower(wchar_t c) {
  return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c - L'A' + L'a') : c;
}

bool isSeparator(wchar_t c) {
  return c == L'/' || c == L'\\';
}

bool isWindowsPath(const std::wstring& path) {
  return path.find(L'\\') != std::wstring::npos || (path.size() > 1 && path[1] == L':');
}

bool isSame(wchar_t a, wchar_t b, bool ignoresCase) {
  if (isSeparator(a) && isSeparator(b))
    return true;
  return ignoresCase ? lower(a) == lower(b) : a == b;
}

std::wstring withoutLastSeparators(std::wstring path) {
  while (!path.empty() && isSeparator(path.back())) path.pop_back();
  return path;
}

bool isConfirmedSuggestion(const Outcome& outcome) {
  return outcome.found && outcome.found->step == QV_2_9::kSuggestedResolutionStep &&
         outcome.found->confidence == 0;
}

bool isSamePath(const std::wstring& a, const std::wstring& b) {
  return std::ranges::equal(a, b, [](wchar_t x, wchar_t y) { return isSame(x, y, true); });
}

bool isRefuted(const Outcome& outcome, const std::wstring& path) {
  return std::ranges::any_of(outcome.rejected, [&path](const RejectedFile& file) {
    return file.step == QV_2_9::kSuggestedResolutionStep && isSamePath(file.path, path);
  });
}

}  // namespace

UsedMapping learnedMapping(const std::wstring& recorded, const std::wstring& found) {
  const bool ignoresCase = isWindowsPath(recorded);
  std::size_t same = 0;
  std::size_t tail = 0;  // Begins with a separator.
  while (same < std::min(recorded.size(), found.size())) {
    const wchar_t a = recorded[recorded.size() - 1 - same];
    if (!isSame(a, found[found.size() - 1 - same], ignoresCase))
      break;
    ++same;
    if (isSeparator(a))
      tail = same;
  }
  if (tail <= 1 || tail == recorded.size() || tail == found.size())
    return {};
  return {
      recorded.substr(0, recorded.size() - tail), found.substr(0, found.size() - tail), true, 0};
}

std::wstring mappedPath(const UsedMapping& rule, const std::wstring& recorded) {
  const std::size_t size = rule.from.size();
  if (size == 0 || recorded.size() <= size + 1 || !isSeparator(recorded[size]))
    return {};
  const bool ignoresCase = isWindowsPath(recorded);
  const bool isBelow =
      std::equal(rule.from.begin(), rule.from.end(), recorded.begin(), [=](wchar_t a, wchar_t b) {
        return isSame(a, b, ignoresCase);
      });
  if (!isBelow)
    return {};
  std::wstring rest = recorded.substr(size);
  if (ignoresCase)
    std::ranges::replace(
        rest, L'\\', static_cast<wchar_t>(std::filesystem::path::preferred_separator));
  return rule.to + rest;
}

void PathRules::add(const std::wstring& from, const std::wstring& to) {
  m_rules.push_back({withoutLastSeparators(from), withoutLastSeparators(to), false, 0});
}

void PathRules::note(const std::wstring& recorded, const Outcome& outcome, bool isLearning) {
  std::erase_if(m_rules, [&](const UsedMapping& rule) {
    return rule.isLearned && isRefuted(outcome, mappedPath(rule, recorded));
  });
  if (isConfirmedSuggestion(outcome)) {
    const auto rule = std::ranges::find_if(m_rules, [&](const UsedMapping& one) {
      return isSamePath(mappedPath(one, recorded), outcome.found->path);
    });
    if (rule != m_rules.end())
      ++rule->confirmations;
  } else if (isLearning && outcome.found && outcome.found->confidence == 0) {
    learn(recorded, outcome.found->path);
  }
}

bool PathRules::onBinSearchStarted(const wchar_t* file, QV_2_9::IStringContainer& suggestions) {
  return suggest(file, suggestions);
}

bool PathRules::onSymSearchStarted(const wchar_t* file,
                                   const wchar_t*,
                                   const wchar_t*,
                                   QV_2_9::IStringContainer& suggestions) {
  return suggest(file, suggestions);
}

bool PathRules::onSrcSearchStarted(const wchar_t* file,
                                   const wchar_t*,
                                   const wchar_t*,
                                   QV_2_9::IStringContainer& suggestions) {
  return suggest(file, suggestions);
}

bool PathRules::suggest(const wchar_t* file, QV_2_9::IStringContainer& suggestions) const {
  for (const UsedMapping& rule : m_rules) {
    const std::wstring path = mappedPath(rule, file);
    if (!path.empty())
      suggestions.add(path.c_str());
  }
  return true;
}

// The newest first: neighbours are recorded one after the other.
void PathRules::learn(const std::wstring& recorded, const std::wstring& found) {
  const UsedMapping mapping = learnedMapping(recorded, found);
  const bool isKnown = std::ranges::any_of(m_rules, [&mapping](const UsedMapping& rule) {
    return isSamePath(rule.from, mapping.from) && isSamePath(rule.to, mapping.to);
  });
  if (mapping.from.empty() || isKnown)
    return;
  const auto firstLearned = std::ranges::find_if(m_rules, &UsedMapping::isLearned);
  m_rules.insert(firstLearned, mapping);
}

}  // namespace quiver_tool
