// The shared library is loaded and unloaded again and again, as a viewer does with its plug-ins.
// This program does not link it.

#include <dlfcn.h>

#include <gtest/gtest.h>

#include "quiver/search_dirs.h"
#include "quiver/status.h"

namespace {

using namespace QV_2_9;

constexpr const char* kStatusToString = "_ZN6QV_2_914statusToStringENS_8status_tE";
constexpr const char* kCreateContainer = "_ZN6QV_2_927IEditableSearchDirContainer6createEv";

class Library final {
 public:
  Library() : m_handle(dlopen(QUIVER_LIBRARY, RTLD_NOW | RTLD_LOCAL)) {}
  ~Library() {
    if (m_handle)
      dlclose(m_handle);
  }

  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;

  explicit operator bool() const { return m_handle != nullptr; }

  template <class Function>
  Function* find(const char* name) const {
    return reinterpret_cast<Function*>(dlsym(m_handle, name));
  }

 private:
  void* m_handle;
};

bool isLoaded() {
  void* handle = dlopen(QUIVER_LIBRARY, RTLD_NOW | RTLD_NOLOAD);
  if (handle)
    dlclose(handle);
  return handle != nullptr;
}

void useOnce() {
  const Library library;
  ASSERT_TRUE(library) << dlerror();
  auto* const text = library.find<const char*(status_t)>(kStatusToString);
  ASSERT_TRUE(text) << dlerror();
  EXPECT_STREQ(text(stSuccess), "Operation succeeded");
  auto* const create = library.find<ObjectPtr<IEditableSearchDirContainer>()>(kCreateContainer);
  ASSERT_TRUE(create) << dlerror();
  EXPECT_TRUE(create()->addSearchDir(scAllFiles, L"/a", true, false));
}

TEST(LibraryPosix, LoadsAndUnloadsTwentyTimes) {
  for (int round = 0; round < 20; ++round) {
    ASSERT_FALSE(isLoaded()) << "before round " << round;
    ASSERT_NO_FATAL_FAILURE(useOnce());
  }
  EXPECT_FALSE(isLoaded());
}

}  // namespace
