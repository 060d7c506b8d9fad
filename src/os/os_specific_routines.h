// What the search steps ask the operating system for.

#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "symsrv/symsrv_helper.h"

#include "quiver/symbol_download.h"
#include "search/file_search_strategy.h"

namespace QV_2_9 {

class IOSSpecificRoutines {
 public:
  /// Offers local candidates for an absolute name recorded elsewhere. Returns true when one became
  /// a new valid file.
  virtual bool findByAbsoluteName(const wchar_t* name,
                                  ISearchResultsContainer& results,
                                  std::int32_t osType) = 0;            // 0
  virtual void addBinSystemDirs(ISearchDirectoryContainer& dirs) = 0;  // 1
  virtual void addSymSystemDirs(ISearchDirectoryContainer& dirs) = 0;  // 2
  virtual void addSrcSystemDirs(ISearchDirectoryContainer& dirs) = 0;  // 3
  /// Returns true for a directory text that names a symbol server.
  virtual bool isSymbolServerPath(const wchar_t* path) = 0;  // 4
  /// Returns the local path of the binary's symbol file, fetched from the server elements of
  /// `symbolPath`. Empty when there is none.
  virtual std::wstring downloadSymbolFile(const wchar_t* binaryFile,
                                          const std::vector<std::wstring>& symbolPath,
                                          ISymbolDownloadProgress* progress) = 0;  // 5
  /// The same over the elements of the environment's symbol path.
  virtual std::wstring downloadSymbolFileFromEnvironment(
      const wchar_t* binaryFile,
      ISymbolDownloadProgress* progress) = 0;  // 6
  /// Returns the name to search for.
  virtual std::wstring mapFileName(const wchar_t* name, std::int32_t osType) = 0;  // 7

 protected:
  ~IOSSpecificRoutines() = default;
};

/// Routines that can say more of their downloads implement this too.
class IWatchedDownloads {
 public:
  /// Does what `downloadSymbolFile` does, or `downloadSymbolFileFromEnvironment` when `symbolPath`
  /// is null, and lets `watcher` hear of the stores.
  virtual std::wstring downloadWatched(const wchar_t* binaryFile,
                                       const std::vector<std::wstring>* symbolPath,
                                       ISymbolDownloadProgress* progress,
                                       symsrv_1_0::IStoreWatcher& watcher) = 0;  // 0

 protected:
  ~IWatchedDownloads() = default;
};

/// Returns the routines of this system; never null. They live as long as the library.
IOSSpecificRoutines* getOSSpecificRoutines();

namespace internal {

/// Returns this system's own object, whatever a test has put in its place.
IOSSpecificRoutines& systemRoutines();

/// Replaces what `getOSSpecificRoutines` returns, for tests; null puts the system's own back. No
/// search may be running.
void setOSSpecificRoutinesForTest(IOSSpecificRoutines* routines);

}  // namespace internal
}  // namespace QV_2_9
