// The login name that contexts of one user are filed under.

#pragma once

#include <string>

namespace QV_2_9::internal {

/// Returns `systemName`, "unknown_user" when the system told nothing.
std::wstring userNameOrUnknown(const std::wstring& systemName);

}  // namespace QV_2_9::internal
