// One file from a server: redirects, limits and retries, the same over every transport.
//
// Redirects go to http and https alone, never from https to http, and carry no credentials to
// another host. Bytes are counted here, whatever the server or the transport say.

#pragma once

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
    kRefused,   ///< What came is not what was asked for, or not all of it.
    kTrouble,   ///< The server does not work; asking it again is of no use.
    kCanceled,  ///< The caller wants no more.
    kSinkFull   ///< The sink did not take it.
  };
  Kind kind = Kind::kTrouble;
  int status = 0;      ///< Of HTTP; 0 when there was no answer.
  std::string reason;  ///< For people.
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
