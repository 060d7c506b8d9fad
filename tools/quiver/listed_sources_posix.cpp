// A child process reads the debug data and writes what it found into a pipe, each text with a NUL
// behind it: remark, debug file, then path and MD5 in turn. The program has one thread, so the
// child may do everything that it could.

#include <cstddef>
#include <errno.h>
#include <string_view>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "dwarf_sources_posix.h"
#include "listed_sources.h"
#include "text_encoding.h"

namespace quiver_tool {
namespace {

constexpr rlim_t kMostSeconds = 300;
constexpr const char* kBroken = "its debug data is damaged; no sources were listed";

bool writeAll(int file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(file, bytes.data(), bytes.size());
    if (written < 0 && errno != EINTR)
      return false;
    bytes.remove_prefix(written < 0 ? 0 : static_cast<std::size_t>(written));
  }
  return true;
}

std::string readAll(int file) {
  std::string bytes;
  char block[1 << 16];
  for (;;) {
    const ssize_t count = read(file, block, sizeof block);
    if (count < 0 && errno == EINTR)
      continue;
    if (count <= 0)
      return bytes;
    bytes.append(block, static_cast<std::size_t>(count));
  }
}

[[noreturn]] void runChild(const std::string& path, int output) {
  const rlimit time{kMostSeconds, kMostSeconds};
  const rlimit none{0, 0};
  setrlimit(RLIMIT_CPU, &time);
  setrlimit(RLIMIT_CORE, &none);
  const SourceList list = readDwarfSources(path.c_str());
  std::string message = list.remark + '\0' + list.debugFile + '\0';
  for (const ListedSource& source : list.sources)
    message += source.path + '\0' + source.md5.value_or("") + '\0';
  _exit(writeAll(output, message) ? 0 : 1);
}

bool endedWell(pid_t child) {
  int status = 0;
  while (waitpid(child, &status, 0) < 0) {
    if (errno != EINTR)
      return false;
  }
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

/// Takes the text up to the next NUL off the front.
std::string takeText(std::string_view& bytes) {
  const std::size_t end = bytes.find('\0');
  const std::string text(bytes.substr(0, end));
  bytes.remove_prefix(end == std::string_view::npos ? bytes.size() : end + 1);
  return text;
}

SourceList toList(std::string_view message) {
  SourceList list;
  list.remark = takeText(message);
  list.debugFile = takeText(message);
  while (!message.empty()) {
    std::string path = takeText(message);
    const std::string md5 = takeText(message);
    list.sources.push_back({std::move(path), md5.empty() ? std::nullopt : std::optional(md5)});
  }
  return list;
}

}  // namespace

SourceList listElfSources(const std::wstring& path) {
  int ends[2];
  if (pipe(ends) != 0)
    return {{}, {}, "no pipe could be made; no sources were listed"};
  const pid_t child = fork();
  if (child == 0) {
    close(ends[0]);
    runChild(toBytes(path), ends[1]);
  }
  close(ends[1]);
  const std::string message = child > 0 ? readAll(ends[0]) : std::string();
  close(ends[0]);
  if (child < 0)
    return {{}, {}, "no process could be started; no sources were listed"};
  if (!endedWell(child))
    return {{}, {}, kBroken};
  return toList(message);
}

}  // namespace quiver_tool
