// Finds the library by the address of a function in it.

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <memory>
#include <new>
#include <string>

#include "symsrv/load_module.h"

namespace symsrv_1_0::internal {
namespace {

const char* const kModule = "quiver_symsrv.so";

/// Returns the directory, links resolved, with "/" at its end. Empty when it is not known: a name
/// without any directory is that of a program, which may lie anywhere.
std::string libraryDirectory() {
  Dl_info info{};
  if (dladdr(reinterpret_cast<void*>(&loadCreateFunction), &info) == 0 || !info.dli_fname ||
      !std::strchr(info.dli_fname, '/'))
    return {};
  const std::unique_ptr<char, decltype(&std::free)> real(realpath(info.dli_fname, nullptr),
                                                         &std::free);
  if (!real && errno == ENOMEM)
    throw std::bad_alloc();
  const std::string path = real ? real.get() : "";
  return path.substr(0, path.rfind('/') + 1);
}

/// Asked when the library is loaded: a relative name leads elsewhere as soon as the program changes
/// its directory.
std::string directoryAtLoad() noexcept {
  try {
    return libraryDirectory();
  } catch (const std::bad_alloc&) {
    return {};
  }
}

const std::string g_directory = directoryAtLoad();

}  // namespace

CreateFunction loadCreateFunction() {
  if (g_directory.empty())
    return nullptr;
  void* module = dlopen((g_directory + kModule).c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
  return module ? reinterpret_cast<CreateFunction>(dlsym(module, kCreateFunction)) : nullptr;
}

}  // namespace symsrv_1_0::internal
