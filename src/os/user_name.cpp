// The login name: what the system tells, or a fixed name, so that it is never empty.

#include "os/user_name.h"

#include "paku/environment.h"

#include "os/path_utils.h"

namespace QV_2_9 {

std::wstring getUserName() {
  return internal::userNameOrUnknown(PAKU_3_1::currentUserName());
}

namespace internal {

std::wstring userNameOrUnknown(const std::wstring& systemName) {
  return systemName.empty() ? L"unknown_user" : systemName;
}

}  // namespace internal
}  // namespace QV_2_9
