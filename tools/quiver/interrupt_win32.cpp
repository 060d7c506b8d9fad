// The console calls its handlers on a thread of its own.

#include <windows.h>
#include <atomic>

#include "interrupt.h"

namespace quiver_tool {
namespace {

std::atomic<bool> g_isInterrupted{false};
int g_watches = 0;

BOOL WINAPI note(DWORD event) {
  const bool isFirst = event == CTRL_C_EVENT && !g_isInterrupted.exchange(true);
  return isFirst ? TRUE : FALSE;
}

}  // namespace

InterruptWatch::InterruptWatch() {
  if (g_watches++ > 0)
    return;
  g_isInterrupted = false;
  SetConsoleCtrlHandler(note, TRUE);
}

InterruptWatch::~InterruptWatch() {
  if (--g_watches > 0)
    return;
  SetConsoleCtrlHandler(note, FALSE);
}

bool InterruptWatch::isInterrupted() {
  return g_isInterrupted;
}

}  // namespace quiver_tool
