// The console calls its handlers on a thread of its own.

#include <windows.h>
#include <atomic>

#include "interrupt.h"

namespace quiver_tool {
namespace {

std::atomic<bool> g_isInterrupted{false};

BOOL WINAPI note(DWORD event) {
  const bool isFirst = event == CTRL_C_EVENT && !g_isInterrupted.exchange(true);
  return isFirst ? TRUE : FALSE;
}

}  // namespace

InterruptWatch::InterruptWatch() {
  g_isInterrupted = false;
  SetConsoleCtrlHandler(note, TRUE);
}

InterruptWatch::~InterruptWatch() {
  SetConsoleCtrlHandler(note, FALSE);
}

bool InterruptWatch::isInterrupted() {
  return g_isInterrupted;
}

}  // namespace quiver_tool
