// The symbol-server helper, as those see it who use it. It works in a module of its own,
// "quiver_symsrv", which is opened from the directory of the library when it is first needed: who
// needs no symbol servers need not have it, nor what it depends on.

#pragma once

#include <cstdint>

#include "quiver/object.h"

namespace symsrv_1_0 {

/// What a store answered, or why it was not asked.
enum class StoreOutcome : std::int32_t {
  kFound = 0,      ///< The file, and it belongs to the binary.
  kMissing = 1,    ///< No such file.
  kMismatch = 2,   ///< A file that does not belong to the binary.
  kFailed = 3,     ///< Nothing that could be used.
  kLeftAlone = 4,  ///< It was not asked.
  kCanceled = 5,   ///< The caller wanted no more.
};

/// Texts are never null, and carry no credentials and no queries of addresses.
struct StoreReport {
  const wchar_t* store;     ///< The store's root. Empty when no store was reached.
  const wchar_t* place;     ///< Where it was asked; may be empty.
  const wchar_t* identity;  ///< What tells the symbol file from others; empty when unknown.
  StoreOutcome outcome;
  const wchar_t* detail;  ///< For people.
  std::int64_t bytes;     ///< That came, or the size in a directory.
};

/// Hears what each store says.
///
/// Implemented by: the caller.
/// Lifetime: borrowed for the `download` call.
/// Threads: the thread of that call.
/// Failure: an exception ends the download and leaves through `download`.
class IStoreWatcher {
 public:
  virtual void onStore(const StoreReport& report) = 0;  // 0

 protected:
  ~IStoreWatcher() = default;
};

/// Follows one download.
///
/// Implemented by: the caller.
/// Lifetime: borrowed for the `download` call.
/// Threads: the thread of that call.
/// Failure: an exception ends the download and leaves through `download`.
class IDownloadProgressCallback {
 public:
  /// A transfer begins; `value` is its size in KiB, 0 when unknown. Setting `*cancel` ends it.
  virtual void onStart(int value, bool* cancel) = 0;  // 0
  /// `value` KiB have come. Called several times a second, also while nothing comes.
  virtual void onProgress(int value, bool* cancel) = 0;  // 1
  /// Called once after `onStart`, however it ended.
  virtual void onFinish() = 0;  // 2
  /// Returns who wants to hear of the stores. Null for nobody: nothing is composed then.
  virtual IStoreWatcher* storeWatcher() { return nullptr; }  // 3

 protected:
  ~IDownloadProgressCallback() = default;
};

/// Implemented by: the module.
/// Lifetime: counted; counts may change on any thread.
/// Threads: any.
/// Failure: none.
class ISymbolFileInfo : public QV_2_9::IQVObject {
 public:
  /// Returns the local path; never null, valid while the object lives.
  virtual const wchar_t* getPath() = 0;  // 4
};

/// Implemented by: the module.
/// Lifetime: counted; counts may change on any thread.
/// Threads: downloads may run at the same time; each uses the servers registered when it began.
/// Failure: null.
class ISymSrvHelper : public QV_2_9::IQVObject {
 public:
  /// Registers one element of a symbol path, such as "srv*C:\cache*https://host/symbols". An
  /// element that cannot be used is ignored.
  virtual void addServer(const wchar_t* element) = 0;  // 4
  /// Forgets the registered elements.
  virtual void clearServers() = 0;  // 5
  /// Returns the symbol file that belongs to the binary. Null when no server had it.
  virtual QV_2_9::ObjectPtr<ISymbolFileInfo> download(
      const wchar_t* binaryFile,
      IDownloadProgressCallback* progress) = 0;  // 6
  /// Answers for the servers that `elements` name, and not for the registered ones, as far as that
  /// takes no server and no copy: from the nearest stores, or because nobody is left to ask.
  /// Returns true when that decides it, with the file or null in `*file`; else nobody is told
  /// anything.
  virtual bool findNear(const wchar_t* /*binaryFile*/,
                        const wchar_t* const* /*elements*/,
                        std::int32_t /*count*/,
                        IStoreWatcher* /*watcher*/,
                        QV_2_9::ObjectPtr<ISymbolFileInfo>* /*file*/) {
    return false;
  }  // 7

  /// Returns a new helper. Null when the module is not in the library's directory.
  static QV_2_9::ObjectPtr<ISymSrvHelper> create();
};

/// Changes when anything above does; the module answers only to the number it was built with.
inline constexpr std::int32_t kInterfaceVersion = 3;

/// The one function of the module, by name and by type. Returns null or a new object.
inline constexpr const char* kCreateFunction = "quiver_symsrv_create";
using CreateFunction = ISymSrvHelper* (*)(std::int32_t interfaceVersion);

}  // namespace symsrv_1_0
