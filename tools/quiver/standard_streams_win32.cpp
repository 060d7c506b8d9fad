// A console takes text, everything else the bytes as they are.

#include <windows.h>
#include <cerrno>
#include <fcntl.h>
#include <io.h>
#include <string_view>

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

/// How much of the text goes to the console at once: older ones take no more, and a surrogate pair
/// that is torn apart is shown as two strange characters.
DWORD portionOf(std::wstring_view text) {
  constexpr std::size_t kPortion = 8192;
  if (text.size() <= kPortion)
    return static_cast<DWORD>(text.size());
  return IS_HIGH_SURROGATE(text[kPortion - 1]) ? kPortion - 1 : kPortion;
}

bool writeText(HANDLE console, const std::string& bytes) {
  const std::wstring text = toWide(bytes);
  for (std::wstring_view rest = text; !rest.empty();) {
    DWORD written = 0;
    if (!WriteConsoleW(console, rest.data(), portionOf(rest), &written, nullptr) || written == 0) {
      errno = EIO;
      return false;
    }
    rest.remove_prefix(written);
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

bool isTerminalForDiagnostics() {
  return consoleBehind(stderr) != nullptr;
}

// Intended: lines end with a line feed alone, so that output is the same on every system.
void prepareStandardStreams() {
  for (std::FILE* stream : {stdout, stderr})
    if (_fileno(stream) >= 0)
      _setmode(_fileno(stream), _O_BINARY);
}

}  // namespace quiver_tool
