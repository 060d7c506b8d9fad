// A console takes text, everything else the bytes as they are.

#include <windows.h>
#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <io.h>

#include "standard_streams.h"
#include "stream_bytes.h"
#include "text_encoding.h"

namespace quiver_tool {
namespace {

/// The console behind a stream; null when there is something else.
HANDLE consoleBehind(std::FILE* stream) {
  const int descriptor = _fileno(stream);
  if (descriptor < 0)
    return nullptr;
  const HANDLE handle = reinterpret_cast<HANDLE>(_get_osfhandle(descriptor));
  DWORD mode = 0;
  return GetConsoleMode(handle, &mode) ? handle : nullptr;
}

bool writeText(HANDLE console, const std::string& bytes) {
  constexpr DWORD kPortion = 8192;  // older consoles take no more at once
  const std::wstring text = toWide(bytes);
  for (std::size_t at = 0; at < text.size();) {
    const DWORD size = static_cast<DWORD>(std::min<std::size_t>(kPortion, text.size() - at));
    DWORD written = 0;
    if (!WriteConsoleW(console, text.data() + at, size, &written, nullptr) || written == 0) {
      errno = EIO;
      return false;
    }
    at += written;
  }
  return true;
}

}  // namespace

bool writeBytes(std::FILE* stream, const std::string& bytes) {
  if (const HANDLE console = consoleBehind(stream))
    return writeText(console, bytes);
  SetLastError(ERROR_SUCCESS);
  const bool isWritten = std::fwrite(bytes.data(), 1, bytes.size(), stream) == bytes.size() &&
                         std::fflush(stream) == 0;
  // The run-time library knows no name for a pipe that nobody reads.
  if (!isWritten && (GetLastError() == ERROR_NO_DATA || GetLastError() == ERROR_BROKEN_PIPE))
    errno = EPIPE;
  return isWritten;
}

// Intended: lines end with a line feed alone, so that output is the same on every system.
void prepareStandardStreams() {
  for (std::FILE* stream : {stdout, stderr})
    if (_fileno(stream) >= 0)
      _setmode(_fileno(stream), _O_BINARY);
}

}  // namespace quiver_tool
