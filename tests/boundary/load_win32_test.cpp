// The DLL is loaded and unloaded again and again, as a viewer does with its plug-ins. This program
// does not link it.

#include <windows.h>
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "quiver/file_search.h"
#include "quiver/search_dirs.h"
#include "quiver/search_env.h"
#include "quiver/status.h"

namespace {

using namespace QV_2_9;

constexpr int kRounds = 20;

constexpr const char* kStatusToString = "_ZN6QV_2_914statusToStringENS_8status_tE";
constexpr const char* kCreateContainer = "_ZN6QV_2_927IEditableSearchDirContainer6createEv";
constexpr const char* kCreateEnv = "_ZN6QV_2_918IEditableSearchEnv6createEv";
constexpr const char* kCreateSearch =
    "_ZN6QV_2_911IFileSearch6createERKNS_9ObjectPtrINS_10ISearchEnvEEE";

std::wstring libraryPath() {
  const std::string path = QUIVER_LIBRARY;
  return std::wstring(path.begin(), path.end());
}

class Library final {
 public:
  Library() : m_handle(LoadLibraryW(libraryPath().c_str())) {}
  ~Library() {
    if (m_handle)
      FreeLibrary(m_handle);
  }

  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;

  explicit operator bool() const { return m_handle != nullptr; }

  template <class Function>
  Function* find(const char* name) const {
    // Over a plain function type: the compiler warns of casts between unlike ones.
    return reinterpret_cast<Function*>(
        reinterpret_cast<void (*)()>(GetProcAddress(m_handle, name)));
  }

 private:
  HMODULE m_handle;
};

bool isLoaded() {
  return GetModuleHandleW(libraryPath().c_str()) != nullptr;
}

/// Makes and releases objects of several folders of the library.
void useOnce() {
  const Library library;
  ASSERT_TRUE(library) << "error " << GetLastError();
  auto* const text = library.find<const char*(status_t)>(kStatusToString);
  auto* const createDirs = library.find<ObjectPtr<IEditableSearchDirContainer>()>(kCreateContainer);
  auto* const createEnv = library.find<ObjectPtr<IEditableSearchEnv>()>(kCreateEnv);
  auto* const createSearch =
      library.find<ObjectPtr<IFileSearch>(const ObjectPtr<ISearchEnv>&)>(kCreateSearch);
  ASSERT_TRUE(text && createDirs && createEnv && createSearch);
  EXPECT_STREQ(text(stSuccess), "Operation succeeded");
  const auto dirs = createDirs();
  EXPECT_TRUE(dirs->addSearchDir(scAllFiles, L"C:\\no such directory", true, false));
  const auto env = createEnv();
  env->setSearchDirs(dirs);
  const auto search = createSearch(ObjectPtr<ISearchEnv>(env));
  EXPECT_FALSE(
      search->findSrcFile(L"C:\\ci\\no such file.cpp", nullptr, nullptr, nullptr, nullptr));
}

/// Counted one by one: the system's own count is a stub where the tests run under an emulator.
int openHandles() {
  int count = 0;
  for (std::uintptr_t value = 4; value < 0x4000; value += 4) {
    DWORD flags = 0;
    count += GetHandleInformation(reinterpret_cast<HANDLE>(value), &flags) ? 1 : 0;
  }
  return count;
}

TEST(LibraryWindows, LeftHandlesWouldBeCounted) {
  const int before = openHandles();
  const HANDLE handle = CreateEventW(nullptr, FALSE, FALSE, nullptr);
  EXPECT_EQ(openHandles(), before + 1);
  CloseHandle(handle);
  EXPECT_EQ(openHandles(), before);
}

std::size_t bytesIn(HANDLE heap) {
  std::size_t bytes = 0;
  PROCESS_HEAP_ENTRY entry = {};
  HeapLock(heap);
  while (HeapWalk(heap, &entry))
    if (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY)
      bytes += entry.cbData;
  HeapUnlock(heap);
  return bytes;
}

/// Of every heap of the process, the run-time library's included.
std::size_t bytesInAllHeaps() {
  std::vector<HANDLE> heaps(GetProcessHeaps(0, nullptr));
  const DWORD count = GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data());
  heaps.resize(std::min<std::size_t>(count, heaps.size()));
  std::size_t bytes = 0;
  for (HANDLE heap : heaps) bytes += bytesIn(heap);
  return bytes;
}

TEST(LibraryWindows, LeftMemoryWouldBeCounted) {
  std::vector<void*> left(50);
  const std::size_t before = bytesInAllHeaps();
  for (void*& block : left) block = std::malloc(100);
  EXPECT_GE(bytesInAllHeaps(), before + left.size() * 100);
  for (void* block : left) std::free(block);
}

/// Holds what the library needs of the system: only the library itself comes and goes.
void keepSystemLibraries() {
  for (const wchar_t* name : {L"bcrypt.dll", L"advapi32.dll"})
    ASSERT_TRUE(LoadLibraryW(name)) << name;
}

TEST(LibraryWindows, LoadsAndUnloadsTwentyTimesWithoutALeak) {
  ASSERT_NO_FATAL_FAILURE(keepSystemLibraries());
  int handles = 0;
  std::size_t bytes = 0;
  for (int round = 0; round < kRounds; ++round) {
    if (round == kRounds / 2) {  // what the system keeps of a first use is there by now
      handles = openHandles();
      bytes = bytesInAllHeaps();
    }
    ASSERT_FALSE(isLoaded()) << "before round " << round;
    ASSERT_NO_FATAL_FAILURE(useOnce());
  }
  EXPECT_FALSE(isLoaded());
  EXPECT_LE(openHandles(), handles);
  EXPECT_LE(bytesInAllHeaps(), bytes);
}

/// What the library writes to standard error when a search is made.
std::string traceOfOneLife() {
  testing::internal::CaptureStderr();
  useOnce();
  return testing::internal::GetCapturedStderr();
}

TEST(LibraryWindows, ReadsTheTraceSwitchAnewWithEachLoading) {
  for (int round = 0; round < 3; ++round) {
    SetEnvironmentVariableW(L"QUIVER_DEBUG", L"1");
    EXPECT_NE(traceOfOneLife().find("[quiver]"), std::string::npos) << "round " << round;
    SetEnvironmentVariableW(L"QUIVER_DEBUG", nullptr);
    EXPECT_EQ(traceOfOneLife(), "") << "round " << round;
  }
}

}  // namespace
