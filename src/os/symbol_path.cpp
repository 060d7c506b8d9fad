// Reads the symbol path anew on every call: a viewer may change it between searches.

#include "os/symbol_path.h"

#include "os/letter_case.h"
#include "os/path_utils.h"

namespace QV_2_9::internal {

bool isSymbolServerElement(const wchar_t* element) {
  return startsWithIgnoreCase(element, L"srv*") || startsWithIgnoreCase(element, L"symsrv*");
}

std::vector<std::wstring> symbolPathElements() {
  std::vector<std::wstring> elements;
  splitString(getEnvironmentVariable(L"_NT_SYMBOL_PATH").c_str(), L';', elements);
  return elements;
}

void addSymbolPathElements(ISearchDirectoryContainer& dirs) {
  for (const std::wstring& element : symbolPathElements())
    dirs.addDirectory(element.c_str(), false);
}

}  // namespace QV_2_9::internal
