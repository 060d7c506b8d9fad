// Directories of a Linux system.

#include "os/linux_specific_routines.h"

#include "paku/environment.h"

#include "os/path_utils.h"
#include "os/symbol_path.h"

namespace QV_2_9 {
namespace {

const wchar_t* const kLibraryDirs[] = {L"/usr/local/lib", L"/lib", L"/usr/lib"};

// Below a library directory where one directory per architecture is the custom. Those of foreign
// architectures count too: a result may come from a program that ran in another mode.
const wchar_t* const kMultiarchNames[] = {L"/x86_64-linux-gnu",
                                          L"/i386-linux-gnu",
                                          L"/x86_64-linux-gnux32",
                                          L"/aarch64-linux-gnu",
                                          L"/arm-linux-gnueabihf",
                                          L"/arm-linux-gnueabi",
                                          L"/loongarch64-linux-gnu",
                                          L"/mips64el-linux-gnuabi64",
                                          L"/powerpc64le-linux-gnu",
                                          L"/riscv64-linux-gnu",
                                          L"/s390x-linux-gnu"};

// Where the word size is part of the library directory's own name instead.
const wchar_t* const kWordSizes[] = {L"64", L"32", L"x32"};

void addIfPresent(const std::wstring& dir, ISearchDirectoryContainer& dirs) {
  internal::FileStatus status;
  if (internal::fileStatus(dir.c_str(), status) && status.isDirectory)
    dirs.addDirectory(dir.c_str(), false);
}

void addArchitectureDirs(const wchar_t* libraryDir, ISearchDirectoryContainer& dirs) {
  for (const wchar_t* name : kMultiarchNames) addIfPresent(std::wstring(libraryDir) + name, dirs);
  for (const wchar_t* wordSize : kWordSizes)
    addIfPresent(std::wstring(libraryDir) + wordSize, dirs);
}

}  // namespace

bool LinuxSpecificRoutines::findByAbsoluteName(const wchar_t*,
                                               ISearchResultsContainer&,
                                               std::int32_t) {
  return false;
}

void LinuxSpecificRoutines::splitPathList(const wchar_t* list, std::vector<std::wstring>& out) {
  splitString(list, L':', out);
}

void LinuxSpecificRoutines::addSystemBinaryDirs(ISearchDirectoryContainer& dirs) {
  addDirsFromEnvironment(L"PATH", dirs);
  for (const wchar_t* dir : kLibraryDirs) dirs.addDirectory(dir, false);
  for (const wchar_t* dir : kLibraryDirs) addArchitectureDirs(dir, dirs);
}

void LinuxSpecificRoutines::addCommonSystemDirs(ISearchDirectoryContainer&) {}

void LinuxSpecificRoutines::addDriverDirs(ISearchDirectoryContainer& dirs) {
  const std::wstring release = PAKU_3_1::systemRelease();
  if (!release.empty())
    dirs.addDirectory((L"/lib/modules/" + release).c_str(), true);
}

void LinuxSpecificRoutines::addSymbolPathDirs(ISearchDirectoryContainer& dirs) {
  internal::addSymbolPathElements(dirs);
  dirs.addDirectory(L"/usr/lib/debug", true);
}

}  // namespace QV_2_9
