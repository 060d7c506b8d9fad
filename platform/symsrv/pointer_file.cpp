// Reads pointer files.

#include "symsrv/pointer_file.h"

#include "symsrv/text.h"

namespace symsrv_1_0::internal {

PointerFile parsePointerFile(std::string_view content) {
  if (content.size() > kMaxPointerSize)
    return {};
  std::string_view text = trimmed(content);
  if (startsWithIgnoreCase(text, "MSG:"))
    return {PointerFile::Kind::kMessage, printable(trimmed(text.substr(4)))};
  if (startsWithIgnoreCase(text, "PATH:"))
    text = trimmed(text.substr(5));
  const bool isOneLine =
      text.find_first_of(std::string_view("\r\n\0", 3)) == std::string_view::npos;
  if (text.empty() || !isOneLine || !isUtf8(text))
    return {};
  return {PointerFile::Kind::kPath, std::string(text)};
}

}  // namespace symsrv_1_0::internal
