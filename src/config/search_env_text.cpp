// The dump of a search environment for the trace.

#include "config/search_env_text.h"

namespace QV_2_9 {
namespace {

// Intended: the blanks of the pieces add up, and every entry ends with a separator.
std::wstring entryToString(const wchar_t* dir, bool recursive, bool highPriority) {
  std::wstring text = dir ? dir : L"";
  text += recursive ? L" (Recursive, " : L" (";
  text += highPriority ? L" HighPriority)" : L" )";
  text += L", ";
  return text;
}

std::wstring entriesToString(const ObjectPtr<ISearchDirIterator>& iterator) {
  if (!iterator)
    return {};
  std::wstring text;
  const wchar_t* dir = nullptr;
  bool recursive = false;
  bool highPriority = false;
  for (iterator->reset(); iterator->get(dir, recursive, highPriority); iterator->next())
    text += entryToString(dir, recursive, highPriority);
  iterator->reset();
  return text;
}

}  // namespace

// A reference of its own for the time of the walk, which calls into the caller's containers.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
std::wstring searchEnvToString(ObjectPtr<ISearchEnv> env, search_category_t category) {
  std::wstring text = L"[ISearchEnv: searchDirs = ";
  text += env ? entriesToString(env->getSearchDirs(category)) : L"NULL pointer";
  text += L"]";
  return text;
}

}  // namespace QV_2_9
