// Promises about lists in variables, and about comparing texts without letter case.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz_entries.h"
#include "fuzz_input.h"
#include "os/path_utils.h"
#include "os/symbol_path.h"

namespace quiver_fuzz {
namespace {

using QV_2_9::compareIgnoreCase;

/// Put together again the elements are the text, and only the last may have a separator: as its
/// last character.
void checkSplit(const std::wstring& text, wchar_t separator) {
  std::vector<std::wstring> elements = {L"what was there before"};
  QV_2_9::splitString(text.c_str(), separator, elements);
  require(elements.empty() == text.empty());
  std::wstring joined;
  for (std::size_t i = 0; i < elements.size(); ++i) {
    const bool isLast = i + 1 == elements.size();
    const std::size_t found = elements[i].find(separator);
    require(found == std::wstring::npos || (isLast && found + 1 == elements[i].size()));
    joined += elements[i];
    if (!isLast)
      joined += separator;
    static_cast<void>(QV_2_9::internal::isSymbolServerElement(elements[i].c_str()));
  }
  require(joined == text);
}

int signOf(int value) {
  return (value > 0) - (value < 0);
}

void checkOrder(const std::wstring& a, const std::wstring& b, const std::wstring& c) {
  const int ab = signOf(compareIgnoreCase(a.c_str(), b.c_str()));
  const int bc = signOf(compareIgnoreCase(b.c_str(), c.c_str()));
  require(compareIgnoreCase(a.c_str(), a.c_str()) == 0);
  require(ab == -signOf(compareIgnoreCase(b.c_str(), a.c_str())));
  if (ab == bc)
    require(signOf(compareIgnoreCase(a.c_str(), c.c_str())) == ab);
  require(ab != 0 || QV_2_9::internal::hashIgnoreCase(a.c_str()) ==
                         QV_2_9::internal::hashIgnoreCase(b.c_str()));
}

}  // namespace

void fuzzList(std::string_view bytes) {
  FuzzInput input(bytes);
  const wchar_t separators[] = {L';', L':'};
  const wchar_t separator = separators[input.below(2)];
  const std::wstring text = input.line();
  checkSplit(text, separator);
  const std::wstring b = input.line();
  checkOrder(text, b, input.line());
  const std::wstring stripped = QV_2_9::stripTrailingSeparators(text.c_str());
  require(text.starts_with(stripped) && stripped.empty() == text.empty());
  require(QV_2_9::stripTrailingSeparators(stripped.c_str()) == stripped);
}

}  // namespace quiver_fuzz
