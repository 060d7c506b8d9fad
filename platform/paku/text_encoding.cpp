// The codec at the width of wchar_t.

#include "paku/text_encoding.h"

#include "paku/utf8_codec.h"

namespace PAKU_3_1 {

std::wstring decode(std::string_view bytes) {
  return internal::decodeUtf8<wchar_t>(bytes);
}

bool encode(std::wstring_view text, std::string& bytes) {
  return internal::encodeUtf8(text, bytes);
}

}  // namespace PAKU_3_1
