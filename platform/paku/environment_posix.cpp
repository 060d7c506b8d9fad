// The process's surroundings on a POSIX system.

#include <cerrno>
#include <cstdlib>
#include <new>
#include <pwd.h>
#include <sys/utsname.h>
#include <unistd.h>
#include <vector>

#include "paku/environment.h"
#include "paku/text_encoding.h"

namespace PAKU_3_1 {

std::wstring environmentValue(const wchar_t* name) {
  std::string bytes;
  if (!name || !encode(name, bytes))
    return {};
  const char* value = std::getenv(bytes.c_str());
  return value ? decode(value) : std::wstring();
}

std::wstring currentUserName() {
  passwd entry{};
  passwd* found = nullptr;
  std::vector<char> storage(1024);
  errno = 0;
  while (getpwuid_r(geteuid(), &entry, storage.data(), storage.size(), &found) == ERANGE) {
    storage.resize(2 * storage.size());
    errno = 0;
  }
  if (!found && errno == ENOMEM)
    throw std::bad_alloc();  // the user has a name all the same
  return found && found->pw_name ? decode(found->pw_name) : std::wstring();
}

std::wstring currentDirectory() {
  std::vector<char> storage(1024);
  while (!getcwd(storage.data(), storage.size())) {
    if (errno != ERANGE)
      return {};
    storage.resize(2 * storage.size());
  }
  // A directory that lies outside the process's root has a text in front of it.
  return storage.front() == '/' ? decode(storage.data()) : std::wstring();
}

std::wstring systemRelease() {
  utsname names{};
  return uname(&names) == 0 ? decode(names.release) : std::wstring();
}

}  // namespace PAKU_3_1
