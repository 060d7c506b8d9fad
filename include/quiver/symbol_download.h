// Progress of a download from a symbol server.

#pragma once

#include <stdint.h>

namespace QV_2_9 {

/// Implemented by: the caller.
/// Lifetime: borrowed for the `findSymFile` call it is given to.
/// Threads: the thread of the search.
/// Failure: none.
class ISymbolDownloadProgress {
 public:
  /// A download begins; `value` is the expected size in KiB, 0 when unknown.
  virtual void start(int32_t value) = 0;  // 0
  /// `value` KiB have arrived so far.
  virtual void progress(int32_t value) = 0;  // 1
  /// The download ended, however it did.
  virtual void finish() = 0;  // 2
  /// Asked after `start` and each `progress`; true gives the download up.
  virtual bool isCanceled() = 0;  // 3

 protected:
  ~ISymbolDownloadProgress() = default;
};

}  // namespace QV_2_9
