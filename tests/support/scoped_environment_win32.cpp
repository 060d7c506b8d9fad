// Environment variables of the process itself, not the run-time library's copy of them. What reads
// them once at load through that copy sees no change here.

#include <windows.h>
#include <system_error>
#include <utility>

#include "support/scoped_environment.h"

namespace quiver_test {
namespace {

std::wstring wideName(const std::string& name) {
  return NativePath(name).get().native();
}

void change(const std::string& name, const wchar_t* value) {
  if (!SetEnvironmentVariableW(wideName(name).c_str(), value) &&
      GetLastError() != ERROR_ENVVAR_NOT_FOUND)
    throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), name);
}

}  // namespace

std::optional<std::filesystem::path> ScopedVariable::valueOf(const std::string& name) {
  std::wstring value(32767, L'\0');  // no variable is longer
  SetLastError(ERROR_SUCCESS);
  const DWORD length = GetEnvironmentVariableW(
      wideName(name).c_str(), value.data(), static_cast<DWORD>(value.size()));
  if (length == 0 && GetLastError() == ERROR_ENVVAR_NOT_FOUND)
    return std::nullopt;
  value.resize(length);
  return std::filesystem::path(value);
}

ScopedVariable::ScopedVariable(std::string name)
    : m_name(std::move(name)), m_former(valueOf(m_name)) {
  unset();
}

ScopedVariable::ScopedVariable(std::string name, const NativePath& value)
    : m_name(std::move(name)), m_former(valueOf(m_name)) {
  set(value);
}

ScopedVariable::~ScopedVariable() {
  SetEnvironmentVariableW(wideName(m_name).c_str(), m_former ? m_former->c_str() : nullptr);
}

void ScopedVariable::set(const NativePath& value) {
  change(m_name, value.get().c_str());
}

void ScopedVariable::unset() {
  change(m_name, nullptr);
}

}  // namespace quiver_test
