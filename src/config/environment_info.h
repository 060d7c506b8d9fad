// The values that a caller records of the analysed system.

#pragma once

#include <cstdint>

#include "quiver/environment_info.h"
#include "quiver/ref_count.h"

namespace QV_2_9 {

class EditableEnvironmentInfo final : public RefCountImpl<IEditableEnvironmentInfo> {
 public:
  std::int32_t getOSType() override { return m_osType; }
  std::int32_t getExtraInfo() override { return m_extraInfo; }
  void setOSType(std::int32_t value) override { m_osType = value; }
  void setExtraInfo(std::int32_t value) override { m_extraInfo = value; }

 private:
  std::int32_t m_osType = 0;
  std::int32_t m_extraInfo = 0;
};

}  // namespace QV_2_9
