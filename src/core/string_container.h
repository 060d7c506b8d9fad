// The list of suggested resolutions of one search.

#pragma once

#include <list>
#include <string>

#include "quiver/string_container.h"

namespace QV_2_9 {

class StringContainer final : public IStringContainer {
 public:
  void add(const wchar_t* text) override;

  /// A list, because callers may add while the search walks it.
  std::list<std::wstring> m_list;
};

/// Returns the list as one line: every element is followed by ", ", the last one too.
std::wstring stringContainerToString(const StringContainer& container);

}  // namespace QV_2_9
