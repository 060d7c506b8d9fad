#include <windows.h>

#include "system_error_text.h"
#include "text_encoding.h"

namespace quiver_tool {

std::string systemErrorText() {
  const DWORD error = GetLastError();
  wchar_t text[512];
  DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                                nullptr,
                                error,
                                0,
                                text,
                                sizeof text / sizeof *text,
                                nullptr);
  while (length > 0 && (text[length - 1] <= L' ' || text[length - 1] == L'.')) --length;
  return length > 0 ? toBytes({text, length}) : "error " + std::to_string(error);
}

}  // namespace quiver_tool
