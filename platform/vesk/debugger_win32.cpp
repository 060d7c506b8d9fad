// The system hands such texts to the debugger, or to a viewer of debug output.

#include <windows.h>

#include "vesk/debugger.h"

namespace vesk_1_8 {

void showInDebugger(const std::string& line) {
  const int size = static_cast<int>(line.size());
  const int length = MultiByteToWideChar(CP_UTF8, 0, line.data(), size, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(length), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, line.data(), size, wide.data(), length);
  OutputDebugStringW((wide + L'\n').c_str());
}

}  // namespace vesk_1_8
