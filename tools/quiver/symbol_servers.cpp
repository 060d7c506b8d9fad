#include "symbol_servers.h"

#include <algorithm>
#include <string_view>

#include "process_environment.h"

namespace quiver_tool {
namespace {

constexpr const char* kSymbolPath = "_NT_SYMBOL_PATH";

bool beginsWith(std::wstring_view text, std::wstring_view lowerCasePrefix) {
  const auto isSame = [](wchar_t c, wchar_t lower) {
    return (c >= L'A' && c <= L'Z' ? c - L'A' + L'a' : c) == lower;
  };
  return text.size() >= lowerCasePrefix.size() &&
         std::equal(lowerCasePrefix.begin(),
                    lowerCasePrefix.end(),
                    text.begin(),
                    [&](wchar_t lower, wchar_t c) { return isSame(c, lower); });
}

std::vector<std::wstring> elementsOf(const std::wstring& symbolPath) {
  std::vector<std::wstring> elements;
  for (std::size_t at = 0; at < symbolPath.size();) {
    const std::size_t end = std::min(symbolPath.find(L';', at), symbolPath.size());
    elements.push_back(symbolPath.substr(at, end - at));
    at = end + 1;
  }
  return elements;
}

bool isDirectory(const std::wstring& element) {
  return !element.empty() && !isSymbolServer(element) && !beginsWith(element, L"cache*");
}

std::wstring symbolPathOf(const SearchPlaces& places) {
  return places.symbolPath.value_or(environmentVariable(kSymbolPath).value_or(std::wstring()));
}

}  // namespace

bool isSymbolServer(const std::wstring& element) {
  return beginsWith(element, L"srv*") || beginsWith(element, L"symsrv*");
}

std::wstring withoutServers(const std::wstring& symbolPath) {
  std::wstring kept;
  for (const std::wstring& directory : directoriesOf(symbolPath))
    kept += (kept.empty() ? L"" : L";") + directory;
  return kept;
}

std::vector<std::wstring> directoriesOf(const std::wstring& symbolPath) {
  std::vector<std::wstring> directories = elementsOf(symbolPath);
  std::erase_if(directories, [](const std::wstring& element) { return !isDirectory(element); });
  return directories;
}

bool isAnyServerTurnedOff(const SearchPlaces& places) {
  const auto isServer = [](const SearchDirectory& dir) { return isSymbolServer(dir.path); };
  return places.isWithoutServers &&
         (std::ranges::any_of(places.directories, isServer) ||
          std::ranges::any_of(elementsOf(symbolPathOf(places)), isSymbolServer));
}

void applySymbolOptions(const SearchPlaces& places, bool isVerbose) {
  std::wstring path = symbolPathOf(places);
  if (places.isWithoutServers)
    path = withoutServers(path);
  if (places.symbolPath || places.isWithoutServers)
    setEnvironmentVariable(kSymbolPath, path);
  if (places.serverSeconds)
    setEnvironmentVariable("QUIVER_SYMBOL_TIMEOUT", std::to_wstring(*places.serverSeconds));
  if (isVerbose)
    setEnvironmentVariable("QUIVER_SYMBOL_LOG", L"1");
}

}  // namespace quiver_tool
