// One request over HTTP, as far as systems differ: no redirects are followed here, nothing is
// judged, nothing is kept but connections.

#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "symsrv/byte_source.h"

namespace symsrv_1_0::internal {

struct HopRequest {
  std::string url;       ///< Without credentials.
  std::string userInfo;  ///< Escaped as in addresses; empty for none.
  std::string caFile;    ///< Certificates to trust in place of the system's; empty for those.
  std::chrono::milliseconds connectLimit{0};
};

struct HopHeader {
  int status = 0;
  std::optional<std::uint64_t> contentLength;
  std::string contentType;
  std::string location;  ///< As written; empty when there is none.
  std::string retryAfter;
};

/// Follows one request. Calls come on the thread that made it.
class IHopSink : public IByteSink {
 public:
  /// The answer begins. Returns false to end the request.
  virtual bool header(const HopHeader& header) = 0;
  /// Called about every 50 milliseconds, whatever happens, and never while foreign code is on the
  /// stack: it may throw. Returns false to end the request.
  virtual bool tick() = 0;

 protected:
  ~IHopSink() = default;
};

enum class HopOutcome {
  kComplete,     ///< The answer came to its end as far as the protocol tells.
  kStopped,      ///< The sink ended it.
  kUnreachable,  ///< No connection, or no sensible answer.
  kUntrusted,    ///< The server does not show a certificate that is trusted.
  kCutOff        ///< The answer ended early.
};

struct HopResult {
  HopOutcome outcome = HopOutcome::kUnreachable;
  std::string reason;
};

/// Used by several threads at once.
class ITransport {
 public:
  virtual ~ITransport() = default;
  virtual HopResult get(const HopRequest& request, IHopSink& sink) = 0;
};

/// Returns the system's transport. Null when it cannot be made.
std::unique_ptr<ITransport> makeTransport();

}  // namespace symsrv_1_0::internal
