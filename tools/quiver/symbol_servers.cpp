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

}  // namespace

bool isSymbolServer(const std::wstring& element) {
  return beginsWith(element, L"srv*") || beginsWith(element, L"symsrv*");
}

std::wstring withoutServers(const std::wstring& symbolPath) {
  std::wstring kept;
  for (std::size_t at = 0; at < symbolPath.size();) {
    const std::size_t end = std::min(symbolPath.find(L';', at), symbolPath.size());
    const std::wstring element = symbolPath.substr(at, end - at);
    if (!isSymbolServer(element) && !beginsWith(element, L"cache*"))
      kept += (kept.empty() ? L"" : L";") + element;
    at = end + 1;
  }
  return kept;
}

void applySymbolOptions(const SearchPlaces& places, bool isVerbose) {
  std::wstring path =
      places.symbolPath.value_or(environmentVariable(kSymbolPath).value_or(std::wstring()));
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
