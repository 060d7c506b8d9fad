// The values that a caller records of the analysed system.

#include "config/environment_info.h"

namespace QV_2_9 {

ObjectPtr<IEditableEnvironmentInfo> IEditableEnvironmentInfo::create() {
  return new EditableEnvironmentInfo;
}

}  // namespace QV_2_9
