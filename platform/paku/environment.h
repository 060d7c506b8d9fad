// What the process knows of the system it runs on, as text. Empty when the system does not tell.
//
// Bytes that are no text come and go as text_encoding.h says.

#pragma once

#include <string>

namespace PAKU_3_1 {

/// Returns the variable's value. Empty when it is unset.
std::wstring environmentValue(const wchar_t* name);

/// Returns the login name of the effective user, without asking the environment.
std::wstring currentUserName();

/// Returns the absolute path of the working directory.
std::wstring currentDirectory();

/// Returns the running system's release, such as "6.1.0-18-amd64".
std::wstring systemRelease();

}  // namespace PAKU_3_1
