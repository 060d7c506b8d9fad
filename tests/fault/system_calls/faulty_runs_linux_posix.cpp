// See faulty_runs.h.

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <exception>
#include <filesystem>
#include <iostream>
#include <new>
#include <set>
#include <sys/mman.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "fault/system_calls/failing_calls.h"
#include "fault/system_calls/faulty_runs.h"

// Of the address sanitizer's build; null in others.
extern "C" int __lsan_do_recoverable_leak_check() __attribute__((weak));

namespace quiver_test {
namespace {

constexpr unsigned kPatience = 60;  // seconds until a run counts as waiting for ever
constexpr int kAtOnce = 6;          // many wait for the kernel, to give up watches or to write
constexpr std::size_t kMostComplaints = 20;

/// What a run leaves for the process that started it.
struct Shared {
  FaultScript script;
  char complaints[4096];
};

class SharedMemory final {
 public:
  SharedMemory()
      : m_memory(mmap(
            nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0)) {
    if (m_memory == MAP_FAILED)
      throw std::bad_alloc();
  }
  ~SharedMemory() { munmap(m_memory, sizeof(Shared)); }

  SharedMemory(const SharedMemory&) = delete;
  SharedMemory& operator=(const SharedMemory&) = delete;

  Shared& get() const { return *static_cast<Shared*>(m_memory); }
  void clear() const { std::memset(m_memory, 0, sizeof(Shared)); }

 private:
  void* m_memory;
};

struct Fault {
  NotedCall call;
  std::int32_t error;
  bool isLasting;
};

std::string textOf(const Fault& fault) {
  const std::string error = fault.error == kShort ? "SHORT" : strerrorname_np(fault.error);
  return std::string(nameOf(fault.call.number)) + " " + std::to_string(fault.call.occurrence) +
         ", " + error + (fault.isLasting ? " from then on" : "");
}

std::set<std::string> openDescriptors() {
  std::set<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    std::error_code gone;  // that of the directory itself
    const std::filesystem::path target = std::filesystem::read_symlink(entry.path(), gone);
    if (!gone && target.string().find("/fd") == std::string::npos)
      names.insert(entry.path().filename().string() + " -> " + target.string());
  }
  return names;
}

/// One run, in its own process.
class Run final {
 public:
  Run(FaultyCall& call, Shared& shared) : m_call(call), m_shared(shared) {}

  void go() {
    m_call.prepare();
    const std::set<std::string> before = openDescriptors();
    {
      const SystemCallSeam seam(m_shared.script);
      ask();
    }
    judge();
    complain(m_call.complaint(m_shared.script));
    m_call.recover(m_shared.script);
    // Elsewhere: a lock that was left held may let its own thread pass.
    std::thread(&Run::ask, this).join();
    if (const Answer last = answer(); last != Answer::kRight)
      complain(last == Answer::kWrong ? "a wrong answer afterwards" : "no answer afterwards");
    complain(m_call.laterComplaint());
    m_call.release();
    for (const std::string& left : openDescriptors())
      if (!before.contains(left))
        complain("left open: " + left);
    if (__lsan_do_recoverable_leak_check && __lsan_do_recoverable_leak_check() != 0)
      complain("a leak");
    std::snprintf(m_shared.complaints, sizeof m_shared.complaints, "%s", m_complaints.c_str());
  }

 private:
  void ask() {
    m_hasThrown = true;
    try {
      m_call.ask();
      m_hasThrown = false;
    } catch (const std::bad_alloc&) {
    } catch (const std::exception& error) {
      complain(std::string("an exception: ") + error.what());
    }
  }

  Answer answer() { return m_hasThrown ? Answer::kNothing : m_call.answer(); }

  void judge() {
    const FaultScript& script = m_shared.script;
    const Answer first = answer();
    if (script.unknownCall != 0)
      complain("a call that the seam does not know: " + std::to_string(script.unknownCall));
    if (first == Answer::kWrong)
      complain("a wrong answer");
    const bool isMinor = script.struck == 0 || isToBeOvercome(script.error);
    if (first == Answer::kNothing && isMinor)
      complain("no answer");
  }

  void complain(const std::string& text) {
    if (!text.empty())
      m_complaints += (m_complaints.empty() ? "" : "; ") + text;
  }

  FaultyCall& m_call;
  Shared& m_shared;
  bool m_hasThrown = false;
  std::string m_complaints;
};

[[noreturn]] void runAndEnd(FaultyCall& call, Shared& shared) {
  alarm(kPatience);
  try {
    Run(call, shared).go();
  } catch (const std::exception& error) {
    std::snprintf(shared.complaints,
                  sizeof shared.complaints,
                  "an exception around the call: %s",
                  error.what());
  }
  _exit(0);
}

std::string endOf(int status) {
  if (WIFSIGNALED(status) && WTERMSIG(status) == SIGALRM)
    return "waits for ever";
  if (WIFSIGNALED(status))
    return std::string("ended by ") + strsignal(WTERMSIG(status));
  return WEXITSTATUS(status) == 0 ? "" : "ended with " + std::to_string(WEXITSTATUS(status));
}

/// The process of one run, seen from the one that started it.
class RunProcess final {
 public:
  /// `fault` is null for a run without one.
  void start(const FaultyRuns& settings, FaultyCall& call, const Fault* fault) {
    m_memory.clear();
    m_what = fault ? textOf(*fault) : "without a fault";
    FaultScript& script = m_memory.get().script;
    script.copiesByHand = settings.copiesByHand;
    if (fault) {
      script.number = fault->call.number;
      script.occurrence = fault->call.occurrence;
      script.error = fault->error;
      script.isLasting = fault->isLasting;
    }
    std::fflush(nullptr);
    m_process = fork();
    if (m_process == 0)
      runAndEnd(call, m_memory.get());
  }

  bool isRunning() const { return m_process > 0; }
  const std::string& what() const { return m_what; }
  const FaultScript& script() const { return m_memory.get().script; }

  /// Waits for the end. Returns what there is to complain of.
  std::string end() {
    int status = 0;
    if (waitpid(std::exchange(m_process, -1), &status, 0) < 0)
      return "cannot be run";
    const std::string ended = endOf(status);
    return ended.empty() ? m_memory.get().complaints : ended;
  }

 private:
  const SharedMemory m_memory;
  pid_t m_process = -1;
  std::string m_what;
};

std::vector<Fault> faultsOf(const NotedCall& call) {
  std::vector<Fault> faults;
  for (const std::int32_t error : errorsOf(call.number)) {
    if (!fits(call, error))
      continue;
    faults.push_back({call, error, false});
    if (mayLast(error))
      faults.push_back({call, error, true});
  }
  return faults;
}

/// Of each call as many as the build has time for, others with each call.
std::vector<Fault> faultsOf(const std::vector<NotedCall>& calls) {
  std::vector<Fault> faults;
  std::size_t first = 0;
  for (const NotedCall& call : calls) {
    const std::vector<Fault> possible = faultsOf(call);
    const std::size_t count = std::min<std::size_t>(possible.size(), MOST_FAULTS_OF_A_CALL);
    for (std::size_t i = 0; i < count; ++i)
      faults.push_back(possible[(first + i) % possible.size()]);
    ++first;
  }
  return faults;
}

/// All runs of one call, from the process that stays as it is.
class Runs final {
 public:
  Runs(const FaultyRuns& settings, FaultyCall& call) : m_settings(settings), m_call(call) {}

  void go() {
    const auto begin = std::chrono::steady_clock::now();
    const std::vector<NotedCall> calls = callsWithoutFaults();
    RunProcess processes[kAtOnce];
    std::size_t next = 0;
    for (const Fault& fault : faultsOf(calls)) {
      RunProcess& process = processes[next++ % kAtOnce];
      if (process.isRunning())
        judge(process);
      process.start(m_settings, m_call, &fault);
    }
    for (RunProcess& process : processes)
      if (process.isRunning())
        judge(process);
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
    std::printf("%s: %zu system calls, %zu runs, %zu without the call, %.1f s\n",
                m_settings.title,
                calls.size(),
                m_runs,
                m_unreached,
                taken.count());
    EXPECT_GE(m_runs, calls.size());
    EXPECT_GT(m_runs, 0u) << "there was nothing to fail";
    EXPECT_LE(m_unreached, m_settings.isSteady ? 0 : m_runs / 5);
    EXPECT_EQ(m_bad, 0u);
  }

 private:
  std::vector<NotedCall> callsWithoutFaults() {
    RunProcess process;
    process.start(m_settings, m_call, nullptr);
    expectGood(process.what(), process.end());
    const FaultScript& script = process.script();
    EXPECT_LE(script.count, FaultScript::kMostCalls);
    const int count = std::min<int>(script.count, FaultScript::kMostCalls);
    return {script.calls, script.calls + count};
  }

  void judge(RunProcess& process) {
    expectGood(process.what(), process.end());
    ++m_runs;
    m_unreached += process.script().struck == 0 ? 1u : 0u;
  }

  void expectGood(const std::string& what, const std::string& complaint) {
    if (complaint.empty() || ++m_bad > kMostComplaints)
      return;
    ADD_FAILURE() << m_settings.title << ", " << what << ": " << complaint;
  }

  const FaultyRuns& m_settings;
  FaultyCall& m_call;
  std::size_t m_runs = 0;
  std::size_t m_unreached = 0;
  std::size_t m_bad = 0;
};

}  // namespace

void runWithFaults(const FaultyRuns& runs, FaultyCall& call) {
  if (const std::string refusal = SystemCallSeam::refusal(); !refusal.empty())
    GTEST_SKIP() << "NO SYSTEM CALL IS FAILED HERE: " << refusal;
  Runs(runs, call).go();
}

}  // namespace quiver_test
