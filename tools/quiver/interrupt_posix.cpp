#include <csignal>

#include "interrupt.h"

namespace quiver_tool {
namespace {

volatile std::sig_atomic_t g_isInterrupted = 0;
struct sigaction g_former;
int g_watches = 0;

void note(int) {
  g_isInterrupted = 1;
}

}  // namespace

InterruptWatch::InterruptWatch() {
  if (g_watches++ > 0)
    return;
  g_isInterrupted = 0;
  struct sigaction action = {};
  action.sa_handler = note;
  action.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART);
  sigaction(SIGINT, &action, &g_former);
}

InterruptWatch::~InterruptWatch() {
  if (--g_watches > 0)
    return;
  sigaction(SIGINT, &g_former, nullptr);
}

bool InterruptWatch::isInterrupted() {
  return g_isInterrupted != 0;
}

}  // namespace quiver_tool
