// What the kernel tells of changes in watched directories.
//
// A queue belongs to one process: a child that a fork made shares the kernel's side of it, so it
// must never read from it. `TreeRegistry` sees to that.

#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <sys/inotify.h>

#include "paku/own_descriptor_posix.h"

namespace PAKU_3_1::internal {

/// How many directories all queues of the process may watch together: half of what the system lets
/// one user watch. Safe to use from several threads.
class WatchBudget final {
 public:
  static bool take();
  static void giveBack(std::size_t count);
  static std::size_t used();
};

class WatchQueue final {
 public:
  WatchQueue();
  ~WatchQueue();

  WatchQueue(const WatchQueue&) = delete;
  WatchQueue& operator=(const WatchQueue&) = delete;

  /// Returns false when the system gives no queue.
  bool isOpen() const { return static_cast<bool>(m_inotify) && static_cast<bool>(m_mounts); }

  /// Returns the number of the watch on an open directory, which is the same for as long as the
  /// directory is watched. -1 when it cannot be watched.
  int watch(int directory);

  /// The directory may be gone already.
  void unwatch(int watch);

  struct Pending {
    bool changes;
    bool mounts;  ///< The table of mounts has changed since this was asked last.
  };
  /// Returns what there is to be read. Never waits.
  Pending pending() const;

  /// Calls `use(event, name)` for each pending change; the name is empty for a change of the
  /// watched directory itself. Returns false when changes were lost or `use` answered false.
  template <class Use>
  bool read(const Use& use) {
    alignas(inotify_event) char buffer[16 * 1024];
    for (std::ptrdiff_t filled; (filled = fill(buffer, sizeof buffer)) != 0;) {
      for (std::ptrdiff_t at = 0; at < filled;) {
        const auto* event = reinterpret_cast<const inotify_event*>(buffer + at);
        at += static_cast<std::ptrdiff_t>(sizeof *event + event->len);
        const std::string_view name = event->len ? event->name : "";
        if (event->mask & IN_IGNORED)
          forget();
        if (event->mask & (IN_Q_OVERFLOW | IN_UNMOUNT) || !use(*event, name))
          return false;
      }
      if (filled < 0)
        return false;
    }
    return true;
  }

  std::size_t watchCount() const { return m_watches; }

 private:
  /// Returns 0 when nothing is left, -1 when the queue cannot be read.
  std::ptrdiff_t fill(char* buffer, std::size_t size) const;
  void forget();

  OwnDescriptor m_inotify;
  OwnDescriptor m_mounts;
  std::size_t m_watches = 0;
  int m_newest = 0;
};

}  // namespace PAKU_3_1::internal
