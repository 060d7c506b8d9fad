// Environment variables by setenv. Values are bytes; wide ones become UTF-8.

#include <cerrno>
#include <cstdlib>
#include <system_error>
#include <utility>

#include "support/scoped_environment.h"

namespace quiver_test {

std::optional<std::filesystem::path> ScopedVariable::valueOf(const std::string& name) {
  const char* value = std::getenv(name.c_str());
  if (!value)
    return std::nullopt;
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
  if (m_former)
    setenv(m_name.c_str(), m_former->c_str(), 1);
  else
    unsetenv(m_name.c_str());
}

void ScopedVariable::set(const NativePath& value) {
  if (setenv(m_name.c_str(), value.get().c_str(), 1) != 0)
    throw std::system_error(errno, std::generic_category(), m_name);
}

void ScopedVariable::unset() {
  if (unsetenv(m_name.c_str()) != 0)
    throw std::system_error(errno, std::generic_category(), m_name);
}

}  // namespace quiver_test
