// The process's surroundings on Windows. The environment is the process's own, not the run-time
// library's copy, which misses later changes.

#include <windows.h>

#include "paku/environment.h"

namespace PAKU_3_1 {
namespace {

/// Asks until the answer fits: it may grow between two calls. `ask(storage, size)` returns the
/// length, or the size needed, or 0.
template <class Ask>
std::wstring growing(const Ask& ask) {
  std::wstring text(256, L'\0');
  for (;;) {
    const DWORD size = static_cast<DWORD>(text.size());
    const DWORD length = ask(text.data(), size);
    text.resize(length);
    if (length < size)
      return text;
  }
}

}  // namespace

std::wstring environmentValue(const wchar_t* name) {
  if (!name)
    return {};
  return growing([name](wchar_t* storage, DWORD size) {
    return GetEnvironmentVariableW(name, storage, size);
  });
}

std::wstring currentUserName() {
  std::wstring name(32767, L'\0');
  DWORD size = static_cast<DWORD>(name.size());
  if (!GetUserNameW(name.data(), &size) || size == 0)
    return {};
  name.resize(size - 1);  // the end mark is counted
  return name;
}

std::wstring currentDirectory() {
  return growing([](wchar_t* storage, DWORD size) { return GetCurrentDirectoryW(size, storage); });
}

std::wstring systemRelease() {
  return {};
}

}  // namespace PAKU_3_1
