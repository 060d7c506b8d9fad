// Two processes archive the same files into the same archive and are killed again and again. What
// bears a final name is whole at every moment.
//
// A killed process can leave the temporary file it was writing. Such a file never bears a final
// name, no search asks for its name, and the next copy into the folder uses another; it stays until
// the version is archived again a day later.

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <iostream>
#include <random>
#include <set>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "fault/archive_fixture.h"

namespace quiver_test {
namespace {

using namespace QV_2_9;

constexpr unsigned kSeed = 20240229;
constexpr int kFiles = 100;  // times two processes: 200 calls at least
constexpr int kLives = 60;
constexpr std::size_t kLargestFile = 400000;
constexpr int kLongestDelay = 6000;  // microseconds

/// A running fault_archiver, and the reading end of what it reports.
class Archiver final {
 public:
  Archiver(const std::wstring& archive, const std::wstring& files) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
      return;
    m_reports = ends[0];
    start(NativePath(archive).get(), NativePath(files).get(), ends[1]);
    close(ends[1]);
  }
  ~Archiver() {
    if (m_process > 0)
      end(SIGKILL);
    close(m_reports);
  }

  Archiver(const Archiver&) = delete;
  Archiver& operator=(const Archiver&) = delete;

  pid_t process() const { return m_process; }

  /// Waits for the next result. False when the process has reported its last.
  bool next(archive_result_t& result) const {
    char digit = 0;
    if (m_process <= 0 || read(m_reports, &digit, 1) != 1)
      return false;
    result = static_cast<archive_result_t>(digit - '0');
    return true;
  }

  /// Sends a signal, or none for 0, and returns what the process ended with, as `waitpid` says it.
  int end(int signal) {
    int status = -1;
    if (m_process <= 0)
      return status;
    kill(m_process, signal);
    waitpid(m_process, &status, 0);
    m_process = -1;
    return status;
  }

 private:
  void start(const std::filesystem::path& archive, const std::filesystem::path& files, int output) {
    std::string program = FAULT_ARCHIVER;
    std::string archiveText = archive.string();
    std::string filesText = files.string();
    char* const arguments[] = {program.data(), archiveText.data(), filesText.data(), nullptr};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    if (posix_spawn(&m_process, program.c_str(), &actions, nullptr, arguments, environ) != 0)
      m_process = -1;
    posix_spawn_file_actions_destroy(&actions);
  }

  pid_t m_process = -1;
  int m_reports = -1;
};

bool isSuccess(int status) {
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

class KilledProcesses : public FaultyArchive {
 protected:
  KilledProcesses() {
    std::mt19937 random(kSeed);
    std::uniform_int_distribution<std::size_t> size(0, kLargestFile);
    for (int number = 0; number < kFiles; ++number)
      m_tree.addFile("files/" + std::to_string(number) + ".dll",
                     std::to_string(number) + std::string(size(random), 'x'));
  }

  Archiver start() const { return Archiver(archiveDir(), m_tree.path("files")); }

  /// Runs one process after the other, each until some time after its first copy, and returns those
  /// that were killed. The last one finds everything archived and ends by itself.
  std::set<pid_t> runAndKill(unsigned seed) const {
    std::mt19937 random(seed);
    std::uniform_int_distribution<int> delay(0, kLongestDelay);
    std::set<pid_t> killed;
    for (int life = 0; life < kLives; ++life) {
      Archiver archiver = start();
      const pid_t process = archiver.process();
      archive_result_t result = arAlreadyArchived;
      while (result == arAlreadyArchived && archiver.next(result)) {
      }
      const bool hasCopied = result == arArchived;
      if (hasCopied)
        std::this_thread::sleep_for(std::chrono::microseconds(delay(random)));
      const int status = archiver.end(hasCopied ? SIGKILL : 0);
      if (WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) {
        killed.insert(process);
        continue;
      }
      EXPECT_TRUE(isSuccess(status)) << "a process that was left alone failed";
      if (!hasCopied)
        break;
    }
    return killed;
  }

  static pid_t writerOf(const std::filesystem::path& temporary) {
    const std::string name = temporary.filename().string();
    return static_cast<pid_t>(std::stol(name.substr(name.find('-') + 1)));
  }
};

TEST_F(KilledProcesses, LeaveNoWrongFileUnderAFinalName) {
  std::set<pid_t> killed;
  std::set<pid_t> others;
  std::thread beside([&] { others = runAndKill(kSeed + 1); });
  killed = runAndKill(kSeed);
  beside.join();
  killed.merge(others);
  std::cout << "seed " << kSeed << ", killed " << killed.size() << " processes\n";
  EXPECT_GT(killed.size(), 1u);
  EXPECT_EQ(contents().wrong, std::vector<std::filesystem::path>());

  Archiver survivor = start();
  EXPECT_TRUE(isSuccess(survivor.end(0)));
  const ArchiveContents found = contents();
  EXPECT_EQ(found.whole.size(), std::size_t{kFiles});
  EXPECT_EQ(found.wrong, std::vector<std::filesystem::path>());
  for (const std::filesystem::path& left : found.others)
    EXPECT_TRUE(killed.contains(writerOf(left))) << left << " is of a process that lived";
}

TEST_F(KilledProcesses, TwoThatLiveArchiveEachFileOnceWhole) {
  Archiver one = start();
  Archiver two = start();
  EXPECT_TRUE(isSuccess(one.end(0)));
  EXPECT_TRUE(isSuccess(two.end(0)));
  expectOnlyWhole(kFiles);
}

}  // namespace
}  // namespace quiver_test
