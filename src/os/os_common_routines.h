// What every system shares: how the directories of a category are put together, and the answers of
// a system without symbol servers.

#pragma once

#include "os/os_specific_routines.h"

namespace QV_2_9 {

/// Derive once per system and supply the pieces.
class OSCommonRoutines : public IOSSpecificRoutines {
 public:
  void addBinSystemDirs(ISearchDirectoryContainer& dirs) override;
  void addSymSystemDirs(ISearchDirectoryContainer& dirs) override;
  void addSrcSystemDirs(ISearchDirectoryContainer& dirs) override;
  bool isSymbolServerPath(const wchar_t* path) override;
  std::wstring downloadSymbolFile(const wchar_t* binaryFile,
                                  const std::vector<std::wstring>& symbolPath,
                                  ISymbolDownloadProgress* progress) override;
  std::wstring downloadSymbolFileFromEnvironment(const wchar_t* binaryFile,
                                                 ISymbolDownloadProgress* progress) override;

  /// Splits the value of a variable that lists paths. `list` is not empty.
  virtual void splitPathList(const wchar_t* list, std::vector<std::wstring>& out) = 0;  // 8
  /// Where the system keeps executables and libraries.
  virtual void addSystemBinaryDirs(ISearchDirectoryContainer& dirs) = 0;  // 9
  /// What serves binaries and symbol files alike.
  virtual void addCommonSystemDirs(ISearchDirectoryContainer& dirs) = 0;  // 10
  /// Where the system keeps kernel drivers.
  virtual void addDriverDirs(ISearchDirectoryContainer& dirs) = 0;  // 11
  /// Where the system's symbol path leads.
  virtual void addSymbolPathDirs(ISearchDirectoryContainer& dirs) = 0;  // 12

 protected:
  ~OSCommonRoutines() = default;

  /// Adds the elements of a path-list variable, not recursive, empty elements included. Returns
  /// true when at least one was accepted.
  bool addDirsFromEnvironment(const wchar_t* name, ISearchDirectoryContainer& dirs);
};

}  // namespace QV_2_9
