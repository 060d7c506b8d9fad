// One registry for each process: a fork makes a second one of what must not be shared.

#include <atomic>
#include <memory>
#include <thread>
#include <unistd.h>

#include "paku/own_descriptor_posix.h"
#include "paku/tree_registry.h"

namespace PAKU_3_1::internal {
namespace {

struct OfProcess {
  const pid_t process = getpid();
  TreeRegistry registry;
};

std::atomic<OfProcess*> s_current{nullptr};
std::atomic<pid_t> s_claimedBy{0};

struct Owner {
  ~Owner() { delete s_current.exchange(nullptr); }
} s_owner;

/// One thread of a process makes its registry; the others wait for it. What a parent had is left
/// as it is: its locks may be held by threads that this process does not have.
TreeRegistry& registryOfNewProcess(pid_t process) {
  pid_t claimed = s_claimedBy;
  if (claimed != process) {
    // Made first: without memory for it nothing may be claimed that others would wait for.
    auto made = std::make_unique<OfProcess>();
    if (s_claimedBy.compare_exchange_strong(claimed, process)) {
      OwnDescriptor::closeAll();
      s_current = made.release();
    }
  }
  OfProcess* current = nullptr;
  while (!(current = s_current) || current->process != process) std::this_thread::yield();
  return current->registry;
}

}  // namespace

TreeRegistry& TreeRegistry::instance() {
  const pid_t process = getpid();
  OfProcess* const current = s_current;
  return current && current->process == process ? current->registry : registryOfNewProcess(process);
}

std::optional<unsigned> rightsOfThread() {
  return geteuid();
}

}  // namespace PAKU_3_1::internal
