// The order in which directories are added is the order in which they are scanned.

#include "os/os_common_routines.h"

#include "os/path_utils.h"

namespace QV_2_9 {

void OSCommonRoutines::addBinSystemDirs(ISearchDirectoryContainer& dirs) {
  addSystemBinaryDirs(dirs);
  addCommonSystemDirs(dirs);
  addDriverDirs(dirs);
}

void OSCommonRoutines::addSymSystemDirs(ISearchDirectoryContainer& dirs) {
  addSymbolPathDirs(dirs);
  addCommonSystemDirs(dirs);
  addDriverDirs(dirs);
}

void OSCommonRoutines::addSrcSystemDirs(ISearchDirectoryContainer&) {}

bool OSCommonRoutines::isSymbolServerPath(const wchar_t*) {
  return false;
}

std::wstring OSCommonRoutines::downloadSymbolFile(const wchar_t*,
                                                  const std::vector<std::wstring>&,
                                                  ISymbolDownloadProgress*) {
  return {};
}

std::wstring OSCommonRoutines::downloadSymbolFileFromEnvironment(const wchar_t*,
                                                                 ISymbolDownloadProgress*) {
  return {};
}

bool OSCommonRoutines::addDirsFromEnvironment(const wchar_t* name,
                                              ISearchDirectoryContainer& dirs) {
  const std::wstring value = getEnvironmentVariable(name);
  if (value.empty())
    return false;
  std::vector<std::wstring> parts;
  splitPathList(value.c_str(), parts);
  bool accepted = false;
  for (const std::wstring& part : parts) {
    if (dirs.addDirectory(part.c_str(), false))
      accepted = true;
  }
  return accepted;
}

}  // namespace QV_2_9
