// Finds the library by the address of a function in it.

#include <cerrno>
#include <cstdlib>
#include <dlfcn.h>
#include <memory>
#include <new>
#include <string>

#include "symsrv/load_module.h"

namespace symsrv_1_0::internal {
namespace {

const char* const kModule = "quiver_symsrv.so";

/// Returns the directory, links resolved, with "/" at its end. Empty when the library was loaded by
/// a relative name: the working directory may be another one by now.
std::string libraryDirectory() {
  Dl_info info{};
  if (dladdr(reinterpret_cast<void*>(&loadCreateFunction), &info) == 0 || !info.dli_fname ||
      info.dli_fname[0] != '/')
    return {};
  const std::unique_ptr<char, decltype(&std::free)> real(realpath(info.dli_fname, nullptr),
                                                         &std::free);
  if (!real && errno == ENOMEM)
    throw std::bad_alloc();
  const std::string path = real ? real.get() : "";
  return path.substr(0, path.rfind('/') + 1);
}

}  // namespace

CreateFunction loadCreateFunction() {
  const std::string directory = libraryDirectory();
  if (directory.empty())
    return nullptr;
  void* module = dlopen((directory + kModule).c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
  return module ? reinterpret_cast<CreateFunction>(dlsym(module, kCreateFunction)) : nullptr;
}

}  // namespace symsrv_1_0::internal
