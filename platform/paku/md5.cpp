// A digest as text.

#include "paku/md5.h"

namespace PAKU_3_1::internal {

std::wstring digestText(const unsigned char* digest, std::size_t length) {
  std::wstring text;
  for (std::size_t i = 0; i < length; ++i) {
    text += L"0123456789abcdef"[digest[i] >> 4];
    text += L"0123456789abcdef"[digest[i] & 15];
  }
  return text;
}

}  // namespace PAKU_3_1::internal
