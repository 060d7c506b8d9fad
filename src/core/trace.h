// The library's one trace channel, "quiver", switched on by the environment variable QUIVER_DEBUG.
//
//   vesk_1_8::Trace trace(traceChannel());
//   trace.init("QV_2_9::FileSearch::findFile");
//   QV_TRACE(trace, kLineNothingFound) << "Nothing found, returning";
//
// While tracing is off nothing to the right of QV_TRACE is evaluated.

#pragma once

#include "vesk/trace.h"

namespace QV_2_9::internal {

/// The source text that stands in every trace line.
inline constexpr const char* kTraceSource = R"(vcs\quiver\src\qv_search)";

/// Returns the channel; it is built when the library is loaded.
vesk_1_8::LogInfo& traceChannel();

}  // namespace QV_2_9::internal

#define QV_TRACE(trace, line)                                                         \
  if (static_cast<const char*>(QV_2_9::internal::traceChannel().Option) == nullptr) { \
  } else                                                                              \
    (trace).start(QV_2_9::internal::kTraceSource, (line))
