// Work that a test does where it can harm nothing: in a process of its own, whose whole file system
// is an empty one in memory, and as a user who may do nothing elsewhere.
//
//   /place   where the work is done, the current directory; the user's own
//   /proc    that of the machine, which the user cannot change

#pragma once

#include <cstdlib>
#include <exception>
#include <fcntl.h>
#include <functional>
#include <sched.h>
#include <string>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace PAKU_3_1::internal {

enum class ConfinedUser {
  kOrdinary,
  kOwnerOfNamespace,  ///< May also mount, inside the file system that it sees.
};

/// What came of work in a confined process.
struct Confined {
  bool isPossible = false;  ///< The machine let us make such a process.
  bool hasEnded = false;    ///< The work came to its end, and the process with it.
  std::string report;       ///< What the work returned; also an exception or a signal.
};

namespace confined {

inline constexpr int kImpossible = 77;
inline constexpr uid_t kNobody = 65534;

inline bool writeText(const char* path, const std::string& text) {
  const int fd = open(path, O_WRONLY | O_CLOEXEC);
  const bool isWritten =
      fd >= 0 && write(fd, text.data(), text.size()) == static_cast<ssize_t>(text.size());
  close(fd);
  return isWritten;
}

/// Returns false when we may not; nothing has been touched then.
inline bool enterNamespaces(const std::string& root) {
  const uid_t user = geteuid();
  const gid_t group = getegid();
  if (unshare(user == 0 ? CLONE_NEWNS : CLONE_NEWNS | CLONE_NEWUSER) != 0)
    return false;
  if (user != 0 && !(writeText("/proc/self/setgroups", "deny") &&
                     writeText("/proc/self/uid_map", "0 " + std::to_string(user) + " 1") &&
                     writeText("/proc/self/gid_map", "0 " + std::to_string(group) + " 1")))
    return false;
  const std::string proc = root + "/proc";
  return mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
         mount("none", root.c_str(), "tmpfs", MS_NOSUID | MS_NODEV, "size=256m") == 0 &&
         mkdir(proc.c_str(), 0755) == 0 &&
         mount("/proc", proc.c_str(), nullptr, MS_BIND | MS_REC, nullptr) == 0 &&
         chroot(root.c_str()) == 0 && chdir("/") == 0 && mkdir("/place", 0755) == 0;
}

/// Root of the machine becomes nobody. Who was an ordinary user before is root of nothing but the
/// namespace and keeps that.
inline bool becomeOrdinary(bool wasRoot) {
  if (!wasRoot)
    return true;
  const bool isDone = chown("/place", kNobody, kNobody) == 0 &&
                      setresgid(kNobody, kNobody, kNobody) == 0 &&
                      setresuid(kNobody, kNobody, kNobody) == 0 && setuid(0) != 0;
  prctl(PR_SET_DUMPABLE, 1);  // or /proc/self would no longer be ours
  return isDone;
}

inline void send(int pipe, const std::string& text) {
  for (std::size_t at = 0; at < text.size();) {
    const ssize_t count = write(pipe, text.data() + at, text.size() - at);
    if (count <= 0)
      return;
    at += static_cast<std::size_t>(count);
  }
}

[[noreturn]] inline void runChild(const std::string& root,
                                  ConfinedUser user,
                                  const std::function<std::string()>& work,
                                  int pipe) {
  const bool wasRoot = geteuid() == 0;
  if (!enterNamespaces(root) || (user == ConfinedUser::kOrdinary && !becomeOrdinary(wasRoot)) ||
      chdir("/place") != 0)
    _exit(kImpossible);
  try {
    send(pipe, work());
  } catch (const std::exception& error) {
    send(pipe, std::string("exception: ") + error.what());
  }
  _exit(0);
}

inline std::string readAll(int pipe) {
  std::string text;
  char buffer[4096];
  for (ssize_t count; (count = read(pipe, buffer, sizeof buffer)) > 0;)
    text.append(buffer, static_cast<std::size_t>(count));
  return text;
}

}  // namespace confined

/// Returns what `work` returned. No other thread may run.
inline Confined runConfined(ConfinedUser user, const std::function<std::string()>& work) {
  const char* const temporary = std::getenv("TMPDIR");
  std::string root = std::string(temporary ? temporary : "/tmp") + "/confined-XXXXXX";
  int ends[2];
  if (!mkdtemp(root.data()) || pipe2(ends, O_CLOEXEC) != 0)
    return {};
  const pid_t child = fork();
  if (child == 0)
    confined::runChild(root, user, work, ends[1]);
  close(ends[1]);
  Confined confined;
  confined.report = confined::readAll(ends[0]);
  close(ends[0]);
  int status = 0;
  const bool isOver = child > 0 && waitpid(child, &status, 0) == child;
  rmdir(root.c_str());  // empty here: what was mounted on it was seen by the child alone
  confined.isPossible =
      !(isOver && WIFEXITED(status) && WEXITSTATUS(status) == confined::kImpossible);
  if (isOver && WIFSIGNALED(status))
    confined.report += "ended by signal " + std::to_string(WTERMSIG(status));
  confined.hasEnded = isOver && WIFEXITED(status) && WEXITSTATUS(status) == 0;
  return confined;
}

}  // namespace PAKU_3_1::internal
