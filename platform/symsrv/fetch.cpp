// Follows redirects and tries again.

#include "symsrv/fetch.h"

#include <algorithm>
#include <thread>

#include "symsrv/hop_watcher.h"
#include "symsrv/text.h"

namespace symsrv_1_0::internal {
namespace {

using Kind = FetchResult::Kind;
using std::chrono::milliseconds;

constexpr std::uint64_t kMaxPause = 2;  // seconds
constexpr milliseconds kStep{20};

/// Returns the reason why a redirect is not followed, an empty text otherwise.
std::string refusal(const Url& from, const std::optional<Url>& to) {
  if (!to)
    return "redirected to an address that is not supported";
  if (from.isSecure && !to->isSecure)
    return "redirected from https to http";
  return {};
}

FetchResult tryOnce(HopWatcher& watcher,
                    ITransport& transport,
                    const Url& first,
                    const Settings& settings) {
  Url url = first;
  for (int hops = 0; hops <= settings.limits.redirects; ++hops) {
    HopRequest request{{}, std::move(url.userInfo), settings.caFile, settings.limits.connect};
    url.userInfo.clear();
    request.url = url.below({});
    const HopResult hop = transport.get(request, watcher);
    const std::string location = watcher.takeRedirect();
    if (location.empty())
      return watcher.judge(hop);
    std::optional<Url> next = parseAddress(escapedAddress(resolveLocation(url, location)));
    if (const std::string reason = refusal(url, next); !reason.empty())
      return {Kind::kRefused, watcher.status(), reason};
    // What an address elsewhere brings along as credentials is not ours to send.
    next->userInfo = next->origin() == first.origin() ? first.userInfo : "";
    url = *std::move(next);
  }
  return {Kind::kTrouble, 0, "redirected too often"};
}

/// Returns true for what another try may not meet with.
bool mayPass(const FetchResult& result, const HopWatcher& watcher) {
  return result.kind == Kind::kCutOff || (result.kind == Kind::kTrouble && watcher.isBusy());
}

/// Returns nothing when the server wants to be left alone for longer than anybody waits here. What
/// is no number of seconds is a date, which is worth no wait either.
std::optional<milliseconds> pauseBefore(int nextTry,
                                        const Limits& limits,
                                        const std::string& retryAfter) {
  const milliseconds usual = limits.betweenTries * nextTry;
  if (retryAfter.empty())
    return usual;
  const std::optional<std::uint64_t> seconds = decimal(retryAfter);
  if (!seconds || *seconds > kMaxPause)
    return std::nullopt;
  return std::max(usual, milliseconds(static_cast<std::int64_t>(*seconds) * 1000));
}

/// Returns false when the caller did not want to wait.
bool pause(milliseconds time, Progress& progress) {
  const auto end = std::chrono::steady_clock::now() + time;
  while (std::chrono::steady_clock::now() < end) {
    if (!progress.tick())
      return false;
    std::this_thread::sleep_for(kStep);
  }
  return true;
}

}  // namespace

FetchResult fetch(ITransport& transport,
                  const std::string& address,
                  const Settings& settings,
                  Progress& progress,
                  IFetchSink& sink) {
  const std::optional<Url> url = parseAddress(address);
  if (!url)
    return {Kind::kTrouble, 0, "an address that is not supported"};
  for (int tries = 1;; ++tries) {
    if (!sink.clear())
      return {Kind::kSinkFull, 0, "cannot be written"};
    HopWatcher watcher(settings.limits, progress, sink);
    FetchResult result = tryOnce(watcher, transport, *url, settings);
    if (result.kind == Kind::kTrouble)
      result.retryAfter = decimal(watcher.retryAfter());
    if (!mayPass(result, watcher) || tries >= settings.limits.tries)
      return result;
    const std::optional<milliseconds> time =
        pauseBefore(tries, settings.limits, watcher.retryAfter());
    if (!time)
      return result;
    if (!pause(*time, progress))
      return {Kind::kCanceled, result.status, "canceled"};
  }
}

}  // namespace symsrv_1_0::internal
