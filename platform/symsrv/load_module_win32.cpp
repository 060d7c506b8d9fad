// Finds the library by the address of a function in it.

#include <windows.h>
#include <string>

#include "paku/no_dialogs.h"
#include "symsrv/load_module.h"

namespace symsrv_1_0::internal {
namespace {

const wchar_t* const kModule = L"quiver_symsrv.dll";
constexpr std::size_t kLongestPath = 32768;

/// Returns the directory with a separator at its end. Empty when the system does not tell.
std::wstring libraryDirectory() {
  HMODULE library = nullptr;
  if (!GetModuleHandleExW(
          GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
          reinterpret_cast<const wchar_t*>(&loadCreateFunction),
          &library))
    return {};
  std::wstring path(kLongestPath, L'\0');
  const DWORD length = GetModuleFileNameW(library, path.data(), static_cast<DWORD>(path.size()));
  path.resize(length < path.size() ? length : 0);
  return path.substr(0, path.find_last_of(L"\\/") + 1);
}

}  // namespace

CreateFunction loadCreateFunction() {
  const std::wstring directory = libraryDirectory();
  if (directory.empty())
    return nullptr;
  const PAKU_3_1::NoDialogs noDialogs;  // also when one of its own libraries cannot be opened
  // The module's own libraries are looked for beside it, never in the working directory.
  const HMODULE module =
      LoadLibraryExW((directory + kModule).c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
  if (!module)
    return nullptr;
  return reinterpret_cast<CreateFunction>(
      reinterpret_cast<void*>(GetProcAddress(module, kCreateFunction)));
}

}  // namespace symsrv_1_0::internal
