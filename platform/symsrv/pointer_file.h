// The file "file.ptr", which stands in a store for a file that lies elsewhere.

#pragma once

#include <string>
#include <string_view>

namespace symsrv_1_0::internal {

inline constexpr std::size_t kMaxPointerSize = 4096;

struct PointerFile {
  enum class Kind { kNone, kPath, kMessage };
  Kind kind = Kind::kNone;
  std::string text;  ///< The path, or the reason why there is no file.
};

/// Takes the content: a path, "PATH:" and a path, or "MSG:" and a reason.
PointerFile parsePointerFile(std::string_view content);

}  // namespace symsrv_1_0::internal
