// Syscall user dispatch. Compiled without sanitizers: between the two settings of the selector
// nothing may call anything but what lies in this file.

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <link.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <ucontext.h>
#include <unistd.h>

#include "fault/system_calls/failing_calls.h"
#include "fault/system_calls/system_call_seam.h"

// The one place from where calls pass. The handler returns from there too: it is a call as well.
asm(R"(
  .pushsection .text
  .globl quiver_seam_begin, quiver_seam_call, quiver_seam_return, quiver_seam_end
  .hidden quiver_seam_begin, quiver_seam_call, quiver_seam_return, quiver_seam_end
quiver_seam_begin:
  .type quiver_seam_call, @function
quiver_seam_call:
  mov %rdi, %rax
  mov %rsi, %rcx
  mov 0(%rcx), %rdi
  mov 8(%rcx), %rsi
  mov 16(%rcx), %rdx
  mov 24(%rcx), %r10
  mov 32(%rcx), %r8
  mov 40(%rcx), %r9
  syscall
  ret
  .type quiver_seam_return, @function
quiver_seam_return:
  mov $15, %eax
  syscall
  ud2
quiver_seam_end:
  .popsection
)");

extern "C" {
extern char quiver_seam_begin[];
extern char quiver_seam_end[];
long quiver_seam_call(long number, const long* arguments);
void quiver_seam_return();
}

namespace quiver_test {
namespace {

constexpr int kArguments = 6;
constexpr char kAllow = 0;  // SYSCALL_DISPATCH_FILTER_ALLOW
constexpr char kBlock = 1;

volatile char s_selector = kAllow;
FaultScript* s_script = nullptr;
bool s_hasStruck = false;  // a lasting fault goes on
std::uintptr_t s_libraryBegin = 0;
std::uintptr_t s_libraryEnd = 0;

using Arguments = long[kArguments];

/// The kernel's own idea of a handler, which is not the C library's.
struct KernelAction {
  void (*handler)(int, siginfo_t*, void*);
  unsigned long flags;
  void (*restorer)();
  unsigned long mask;
};

/// Signals by the kernel alone: sanitizers keep handlers back until it suits them.
long setAction(const KernelAction* action, KernelAction* former) {
  const Arguments arguments = {
      SIGSYS, reinterpret_cast<long>(action), reinterpret_cast<long>(former), 8, 0, 0};
  return quiver_seam_call(SYS_rt_sigaction, arguments);
}

bool makesFile(long number, const Arguments& arguments) {
  if (number == SYS_open)
    return (arguments[1] & O_CREAT) != 0;
  return number == SYS_openat && (arguments[2] & O_CREAT) != 0;
}

bool isFileOrConnection(long fd) {
  struct stat status;
  const Arguments arguments = {fd, reinterpret_cast<long>(&status), 0, 0, 0, 0};
  return quiver_seam_call(SYS_fstat, arguments) == 0 &&
         (S_ISREG(status.st_mode) || S_ISSOCK(status.st_mode));
}

/// Returns which argument says how much, 0 for none.
int sizeArgument(long number) {
  return number == SYS_copy_file_range ? 4 : 2;
}

long leastSize(long number) {
  return number == SYS_getdents64 ? 512 : 1;  // room for one entry, however long its name
}

bool canBeShort(long number, const Arguments& arguments) {
  if (number == SYS_getdents64)
    return true;
  for (const std::int32_t error : errorsOf(static_cast<std::int32_t>(number)))
    if (error == kShort)
      return arguments[sizeArgument(number)] > leastSize(number) &&
             isFileOrConnection(arguments[0]);
  return false;
}

bool mayBeFailed(long number, const Arguments& arguments) {
  if (number == SYS_mmap && (arguments[3] & MAP_ANONYMOUS) != 0)
    return false;
  return number >= 0 && number < FaultScript::kMostNumbers &&
         !errorsOf(static_cast<std::int32_t>(number)).empty();
}

NotedCall note(FaultScript& script, long number, const Arguments& arguments) {
  const NotedCall call = {static_cast<std::int32_t>(number),
                          ++script.counts[number],
                          makesFile(number, arguments),
                          canBeShort(number, arguments)};
  if (script.count < FaultScript::kMostCalls)
    script.calls[script.count] = call;
  ++script.count;
  return call;
}

bool isToBeFailed(const FaultScript& script, const NotedCall& call) {
  if (script.error == 0 || !fits(call, script.error))
    return false;
  return (call.number == script.number && call.occurrence == script.occurrence) ||
         (script.isLasting && s_hasStruck);
}

long fail(FaultScript& script, const NotedCall& call, Arguments& arguments) {
  s_hasStruck = true;
  ++script.struck;
  script.struckRemovals += isRemoval(call.number) ? 1 : 0;
  script.struckTransfers += isTransfer(call.number) ? 1 : 0;
  if (script.error == kShort) {
    arguments[sizeArgument(call.number)] = leastSize(call.number);
    return quiver_seam_call(call.number, arguments);
  }
  if (call.number == SYS_close)
    quiver_seam_call(call.number, arguments);
  return -script.error;
}

/// A call that begins a thread or process would end in the middle of the handler there.
bool canBeHandedOver(long number) {
  return number != SYS_clone && number != SYS_clone3 && number != SYS_fork && number != SYS_vfork;
}

long answer(long number, Arguments& arguments, std::uintptr_t caller) {
  FaultScript& script = *s_script;
  if (!canBeHandedOver(number)) {
    script.unknownCall = static_cast<std::int32_t>(number);
    return -EAGAIN;
  }
  const bool isOfLibrary = caller >= s_libraryBegin && caller < s_libraryEnd;
  if (!isOfLibrary || !mayBeFailed(number, arguments))
    return quiver_seam_call(number, arguments);
  const NotedCall call = note(script, number, arguments);
  if (isToBeFailed(script, call))
    return fail(script, call, arguments);
  if (script.copiesByHand && number == SYS_copy_file_range)
    return -EXDEV;
  return quiver_seam_call(number, arguments);
}

void onSystemCall(int, siginfo_t* info, void* context) {
  s_selector = kAllow;
  greg_t* const registers = static_cast<ucontext_t*>(context)->uc_mcontext.gregs;
  Arguments arguments = {static_cast<long>(registers[REG_RDI]),
                         static_cast<long>(registers[REG_RSI]),
                         static_cast<long>(registers[REG_RDX]),
                         static_cast<long>(registers[REG_R10]),
                         static_cast<long>(registers[REG_R8]),
                         static_cast<long>(registers[REG_R9])};
  registers[REG_RAX] = answer(static_cast<long>(registers[REG_RAX]),
                              arguments,
                              reinterpret_cast<std::uintptr_t>(info->si_call_addr));
  s_selector = kBlock;
}

int findLibrary(dl_phdr_info* object, std::size_t, void*) {
  if (!std::strstr(object->dlpi_name, "/libc.so."))
    return 0;
  for (int i = 0; i < object->dlpi_phnum; ++i) {
    const ElfW(Phdr)& segment = object->dlpi_phdr[i];
    if (segment.p_type != PT_LOAD || (segment.p_flags & PF_X) == 0)
      continue;
    s_libraryBegin = object->dlpi_addr + segment.p_vaddr;
    s_libraryEnd = s_libraryBegin + segment.p_memsz;
  }
  return 1;
}

long dispatch(bool isOn) {
  const long begin = reinterpret_cast<long>(quiver_seam_begin);
  const long size = quiver_seam_end - quiver_seam_begin;
  const Arguments on = {
      PR_SET_SYSCALL_USER_DISPATCH, 1, begin, size, reinterpret_cast<long>(&s_selector), 0};
  const Arguments off = {PR_SET_SYSCALL_USER_DISPATCH, 0, 0, 0, 0, 0};
  return quiver_seam_call(SYS_prctl, isOn ? on : off);
}

KernelAction s_former;

}  // namespace

SystemCallSeam::SystemCallSeam(FaultScript& script) {
  constexpr unsigned long kRestorer = 0x04000000;  // SA_RESTORER, which the C library hides
  s_script = &script;
  s_hasStruck = false;
  dl_iterate_phdr(&findLibrary, nullptr);
  const KernelAction action = {&onSystemCall, SA_SIGINFO | kRestorer, &quiver_seam_return, 0};
  setAction(&action, &s_former);
  dispatch(true);
  s_selector = kBlock;
}

SystemCallSeam::~SystemCallSeam() {
  s_selector = kAllow;
  dispatch(false);
  setAction(&s_former, nullptr);
  s_script = nullptr;
}

std::string SystemCallSeam::refusal() {
  dl_iterate_phdr(&findLibrary, nullptr);
  if (s_libraryBegin == 0)
    return "the C library is not found among what is loaded";
  const long error = dispatch(true);
  if (error != 0)
    return std::string("the kernel hands over no system calls: ") +
           std::strerror(static_cast<int>(-error));
  dispatch(false);
  return {};
}

}  // namespace quiver_test
