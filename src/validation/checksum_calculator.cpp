// Checksums of files. The digest itself is the file library's work.

#include "validation/checksum_calculator.h"

#include "paku/file.h"
#include "paku/filename.h"

#include "os/path_utils.h"

namespace QV_2_9 {
namespace {

// The one calculator, null while there is none. Intended: no lock, `create` is not for two threads.
ChecksumCalculator* g_calculator = nullptr;

}  // namespace

Checksum::Checksum(std::int32_t type, const wchar_t* value) : m_value(value), m_type(type) {}

std::int32_t Checksum::getType() {
  return m_type;
}

const wchar_t* Checksum::getValue() {
  return m_value.c_str();
}

bool Checksum::isEqual(IChecksum& other) {
  return other.getType() == m_type && compareIgnoreCase(m_value.c_str(), other.getValue()) == 0;
}

ObjectPtr<IChecksumCalculator> IChecksumCalculator::create() {
  if (!g_calculator)
    g_calculator = new ChecksumCalculator;
  return g_calculator;
}

ChecksumCalculator::~ChecksumCalculator() {
  g_calculator = nullptr;
}

ObjectPtr<IChecksum> ChecksumCalculator::calculate(const wchar_t* path, std::int32_t type) {
  if (type != ctMD5 || !path)
    return nullptr;
  PAKU_3_1::File file(PAKU_3_1::Filename(PAKU_3_1::String(path), 0, false));
  if (file.lastOpStatus() != 0)
    return nullptr;
  const PAKU_3_1::String digest = file.md5checksum();
  if (isEmpty(digest.wcharPtr()))
    return nullptr;
  return new Checksum(ctMD5, digest.wcharPtr());
}

ObjectPtr<IChecksum> ChecksumCalculator::createChecksum(std::int32_t type, const wchar_t* value) {
  if (!value)
    return nullptr;
  return new Checksum(type, value);
}

}  // namespace QV_2_9
