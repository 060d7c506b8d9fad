// An inotify instance, and the table of mounts that the kernel marks when it changes.

#include "paku/watch_queue_posix.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>

#include "paku/uninterrupted_posix.h"

namespace PAKU_3_1::internal {
namespace {

std::atomic<std::size_t> s_watches{0};

/// Returns 0 when the system does not tell. Nothing here allocates: a lack of memory is no answer.
std::size_t systemsLimit() {
  const char* const path = "/proc/sys/fs/inotify/max_user_watches";
  const FileDescriptor file(uninterrupted([&] { return open(path, O_RDONLY | O_CLOEXEC); }));
  char text[32] = {};
  std::size_t length = 0;
  ssize_t count = file ? 1 : 0;
  while (count > 0 && length < sizeof text - 1) {
    count =
        uninterrupted([&] { return ::read(file.get(), text + length, sizeof text - 1 - length); });
    length += count > 0 ? static_cast<std::size_t>(count) : 0;
  }
  return count == 0 ? std::strtoul(text, nullptr, 10) : 0;
}

/// Asked for until the system tells: one that has no descriptor left now will have one later.
std::size_t halfOfTheSystemsLimit() {
  static std::atomic<std::size_t> s_limit{0};
  if (s_limit == 0)
    s_limit = systemsLimit() / 2;
  return s_limit;
}

}  // namespace

bool WatchBudget::take() {
  const std::size_t limit = halfOfTheSystemsLimit();
  if (s_watches.fetch_add(1) < limit)
    return true;
  s_watches.fetch_sub(1);
  return false;
}

void WatchBudget::giveBack(std::size_t count) {
  s_watches.fetch_sub(count);
}

std::size_t WatchBudget::used() {
  return s_watches.load();
}

WatchQueue::WatchQueue()
    : m_inotify(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)),
      m_mounts(uninterrupted([] { return open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC); })) {}

WatchQueue::~WatchQueue() {
  WatchBudget::giveBack(m_watches);
}

int WatchQueue::watch(int directory) {
  // Through its descriptor: a path may lead elsewhere by now.
  constexpr std::uint32_t kChanges = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO |
                                     IN_ATTRIB | IN_DELETE_SELF | IN_ONLYDIR | IN_EXCL_UNLINK;
  if (!WatchBudget::take())
    return -1;
  char path[32];
  std::snprintf(path, sizeof path, "/proc/self/fd/%d", directory);
  const int watch = inotify_add_watch(m_inotify.get(), path, kChanges);
  if (watch > m_newest) {  // numbers are given out in ascending order
    m_newest = watch;
    ++m_watches;
  } else {
    WatchBudget::giveBack(1);
  }
  return watch;
}

void WatchQueue::unwatch(int watch) {
  inotify_rm_watch(m_inotify.get(), watch);  // counted when the kernel confirms it
}

WatchQueue::Pending WatchQueue::pending() const {
  pollfd polled[] = {{m_inotify.get(), POLLIN, 0}, {m_mounts.get(), POLLPRI, 0}};
  if (poll(polled, 2, 0) < 0)
    return {true, true};
  return {polled[0].revents != 0, polled[1].revents != 0};
}

std::ptrdiff_t WatchQueue::fill(char* buffer, std::size_t size) const {
  const ssize_t count = uninterrupted([&] { return ::read(m_inotify.get(), buffer, size); });
  return count < 0 && errno == EAGAIN ? 0 : count;
}

void WatchQueue::forget() {
  if (m_watches > 0) {
    --m_watches;
    WatchBudget::giveBack(1);
  }
}

}  // namespace PAKU_3_1::internal
