// One file from a server: redirects, limits and retries, the same over every transport.
//
// Redirects go to http and https alone, never from https to http, and carry no credentials to
// another host. Bytes are counted here, whatever the server or the transport say.

#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "symsrv/progress.h"
#include "symsrv/settings.h"
#include "symsrv/transport.h"
#include "symsrv/url.h"

namespace symsrv_1_0::internal {

struct FetchResult {
  enum class Kind {
    kDone,      ///< The sink has it all.
    kMissing,   ///< The server has no such file.
    kPage,      ///< A page of text in the place of a file.
    kRefused,   ///< What came, or where it was to come from, is not what is taken.
    kCutOff,    ///< Not all of it came, however often it was tried.
    kTrouble,   ///< The server does not work; asking it again soon is of no use.
    kCanceled,  ///< The caller wants no more.
    kSinkFull   ///< The sink did not take it.
  };
  Kind kind = Kind::kTrouble;
  int status = 0;          ///< Of HTTP; 0 when there was no answer.
  std::string reason;      ///< For people.
  bool isLasting = false;  ///< Of trouble: it does not go away by itself.
  std::optional<std::uint64_t> retryAfter = std::nullopt;  ///< Of trouble: seconds.
};

/// Begun anew for each try.
class IFetchSink : public IByteSink {
 public:
  /// Takes back what was written. Returns false when that cannot be.
  virtual bool clear() = 0;

 protected:
  ~IFetchSink() = default;
};

/// `address` may have credentials. Exceptions of the caller's progress object pass through.
FetchResult fetch(ITransport& transport,
                  const std::string& address,
                  const Settings& settings,
                  Progress& progress,
                  IFetchSink& sink);

}  // namespace symsrv_1_0::internal
