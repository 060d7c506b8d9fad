// One call to the library again and again, each time with another system call of it failing.
//
// First a run without faults notes all system calls; then there is a run for each of them and each
// error that it may meet with. Every run is a process of its own, made from one in which nothing
// has happened yet: what is remembered for the life of a process is forgotten with it, and what
// crashes or waits for ever is that run alone.

#pragma once

#include <string>

#include "fault/system_calls/system_call_seam.h"

namespace quiver_test {

enum class Answer { kRight, kNothing, kWrong };

/// What is called. All but the constructor and destructor runs in the processes of the runs, of
/// which there are several at once.
class FaultyCall {
 public:
  virtual ~FaultyCall() = default;

  /// Makes everything as it is before the call.
  virtual void prepare() {}
  /// The call, with the fault and then again without.
  virtual void ask() = 0;
  /// Returns what the last one came to, unless it threw.
  virtual Answer answer() = 0;
  /// Returns what is wrong with what lies on disk now. Empty for nothing.
  virtual std::string complaint(const FaultScript&) { return {}; }
  /// What happens between the two: the world becomes as it was, and those who can say so do.
  virtual void recover(const FaultScript&) {}
  /// Returns what else is wrong once the answer is right again.
  virtual std::string laterComplaint() { return {}; }
  /// Gives up what may be kept from call to call, open descriptors above all.
  virtual void release() {}
};

/// How far the runs go.
struct FaultyRuns {
  const char* title;
  bool copiesByHand = false;
  /// The calls are the same in each run, as long as nothing fails.
  bool isSteady = true;
};

/// Expects of each run: the right answer or none, and the right one in spite of an interruption or
/// of a transfer in pieces; no exception but for memory; nothing wrong on disk; then the right
/// answer, descriptors as before, and no leak where the build finds leaks. Skips the test where
/// there is no seam.
void runWithFaults(const FaultyRuns& runs, FaultyCall& call);

}  // namespace quiver_test
