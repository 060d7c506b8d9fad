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

void applySymbolOptions(const FindOptions& options) {
  std::wstring path =
      options.symbolPath.value_or(environmentVariable(kSymbolPath).value_or(std::wstring()));
  if (options.isWithoutServers)
    path = withoutServers(path);
  if (options.symbolPath || options.isWithoutServers)
    setEnvironmentVariable(kSymbolPath, path);
  if (options.serverSeconds)
    setEnvironmentVariable("QUIVER_SYMBOL_TIMEOUT", std::to_wstring(*options.serverSeconds));
  if (options.isVerbose && options.category == QV_2_9::scSymbolFiles)
    setEnvironmentVariable("QUIVER_SYMBOL_LOG", L"1");
}

}  // namespace quiver_tool
