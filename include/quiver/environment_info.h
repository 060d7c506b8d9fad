// What a search needs to know about the system on which a result was recorded.

#pragma once

#include <stdint.h>

#include "quiver/export.h"
#include "quiver/object.h"

namespace QV_2_9 {

/// Implemented by: the library; a caller may bring its own.
/// Lifetime: counted. Searches take and drop their references one at a time, under a lock of the
///           library's; nobody else takes or drops one while a search runs.
/// Threads: set the values before a search reads them. Searches ask for them under that lock, so
///          one object serves any number of searches at once.
/// Failure: none; every value is stored and returned as it is.
class IEnvironmentInfo : public IQVObject {
 public:
  /// Returns the kind of operating system: 2 when the result does not come from Windows, which
  /// turns off the translation of Windows device paths; 0 when nobody said.
  virtual int32_t getOSType() = 0;  // 4
  /// Returns a second value that the library only keeps.
  virtual int32_t getExtraInfo() = 0;  // 5
};

/// Implemented by: the library.
/// Lifetime: counted.
/// Threads: as above.
/// Failure: none.
class IEditableEnvironmentInfo : public IEnvironmentInfo {
 public:
  virtual void setOSType(int32_t value) = 0;     // 6
  virtual void setExtraInfo(int32_t value) = 0;  // 7

  /// Returns a new object with both values 0.
  QV_API static ObjectPtr<IEditableEnvironmentInfo> create();
};

}  // namespace QV_2_9
