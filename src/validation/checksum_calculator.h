// Checksum values and the one calculator of the process.

#pragma once

#include <cstdint>
#include <string>

#include "quiver/checksum.h"
#include "quiver/ref_count.h"

namespace QV_2_9 {

class Checksum final : public RefCountImpl<IChecksum> {
 public:
  Checksum(std::int32_t type, const wchar_t* value);

  std::int32_t getType() override;
  const wchar_t* getValue() override;
  bool isEqual(IChecksum& other) override;

 private:
  const std::wstring m_value;
  const std::int32_t m_type;
};

/// Created by `IChecksumCalculator::create` only, which finds it again until its last reference
/// goes.
class ChecksumCalculator final : public RefCountImpl<IChecksumCalculator> {
 public:
  ~ChecksumCalculator() override;

  ObjectPtr<IChecksum> calculate(const wchar_t* path, std::int32_t type) override;
  ObjectPtr<IChecksum> createChecksum(std::int32_t type, const wchar_t* value) override;
};

}  // namespace QV_2_9
