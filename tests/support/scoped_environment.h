// Environment variables for the time of a test.

#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "support/native_path.h"

namespace quiver_test {

/// Sets or unsets a variable and puts its former state back at the end.
///
///   ScopedVariable none("QUIVER_DEBUG");
///   ScopedVariable path("PATH", tree.root());
class ScopedVariable final {
 public:
  /// Unsets the variable.
  explicit ScopedVariable(std::string name);
  /// Sets it; an empty value is a value.
  ScopedVariable(std::string name, const NativePath& value);
  ~ScopedVariable();

  ScopedVariable(const ScopedVariable&) = delete;
  ScopedVariable& operator=(const ScopedVariable&) = delete;

  /// Returns the value that a variable has now; nothing when it is unset.
  static std::optional<std::filesystem::path> valueOf(const std::string& name);

  void set(const NativePath& value);
  void unset();

 private:
  std::string m_name;
  std::optional<std::filesystem::path> m_former;
};

}  // namespace quiver_test
