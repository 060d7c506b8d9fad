// Looks for all files of a manifest, one after the other, through one resolution context.

#pragma once

#include <cstddef>
#include <functional>
#include <vector>

#include "resolution.h"
#include "resolve_options.h"

namespace quiver_tool {

/// What a run tells on the way.
struct ResolveWatcher {
  /// Called before each lookup, with where its file stands.
  std::function<void(const Resolution&, std::size_t next)> beforeFile;
  /// Gets the bytes of the downloads' progress line; empty: nobody sees it.
  std::function<void(const std::string&)> writeDownloads;
};

/// Returns what became of `files`, whose binaries come before what belongs to them. Ctrl-C ends the
/// run before the next file; the remaining ones are not tried.
Resolution resolveFiles(const ResolveOptions& options,
                        const std::vector<RecordedFile>& files,
                        const ResolveWatcher& watcher);

}  // namespace quiver_tool
