// The servers of a chain.
//
// A file that is missing, or not the right one, is asked for under its compressed name too, and
// then remembered as missing. One that was cut off is neither. Trouble sets the server aside for a
// while, or for good when it is one of trust. Servers of debug files for ELF answer questions that
// they do not understand with "unavailable": for these such an answer is a miss.

#include <algorithm>
#include <functional>

#include "symsrv/chain_search.h"

namespace symsrv_1_0::internal {
namespace {

using Kind = FetchResult::Kind;

/// Makes a file when the first byte comes: what is missing leaves no trace.
class LateFile final : public IFetchSink {
 public:
  explicit LateFile(std::function<void(std::optional<Delivery>&)> begin)
      : m_begin(std::move(begin)) {}

  bool write(const void* bytes, std::size_t count) override {
    if (!m_delivery)
      m_begin(m_delivery);
    m_bytes += count;
    return m_delivery->write(bytes, count);
  }
  bool clear() override {
    m_bytes = 0;
    return !m_delivery || m_delivery->clear();
  }
  std::uint64_t bytes() const { return m_bytes; }

  DeliveryResult deliver() {
    return m_bytes > 0 ? m_delivery->deliver() : DeliveryResult{{}, "empty"};
  }

 private:
  const std::function<void(std::optional<Delivery>&)> m_begin;
  std::optional<Delivery> m_delivery;
  std::uint64_t m_bytes = 0;
};

/// For answers of which only the status counts. Small ones are read to their end, for the
/// connection's sake.
class NullSink final : public IFetchSink {
 public:
  bool write(const void*, std::size_t count) override {
    m_bytes += count;
    return m_bytes <= kSmall;
  }
  bool clear() override {
    m_bytes = 0;
    return true;
  }

 private:
  static constexpr std::uint64_t kSmall = std::uint64_t{64} << 10;

  std::uint64_t m_bytes = 0;
};

StoreOutcome outcomeOf(Kind kind) {
  if (kind == Kind::kDone)
    return StoreOutcome::kFound;
  return kind == Kind::kMissing ? StoreOutcome::kMissing : StoreOutcome::kFailed;
}

/// Returns for how long a server is left alone; without a time for good.
std::optional<std::chrono::seconds> timeAside(const FetchResult& result, const Settings& settings) {
  if (result.isLasting)
    return std::nullopt;
  const auto longest = static_cast<std::uint64_t>(settings.serverExpiry.count());
  const auto least = static_cast<std::uint64_t>(settings.leastServerExpiry.count());
  const std::uint64_t wanted = std::max(result.retryAfter.value_or(longest), least);
  return std::chrono::seconds(static_cast<std::int64_t>(std::min(wanted, longest)));
}

/// Returns what a miss is remembered by. With a query, which may be a secret, nothing may reach the
/// disk; the second value tells.
std::pair<std::string, bool> missKey(const Url& url, const std::vector<std::string>& components) {
  Url plain = url;
  plain.userInfo.clear();
  return {plain.below(components), url.query.empty()};
}

}  // namespace

/// Returns what speaks against the server, whatever it is asked for. Empty when nothing does.
std::string ChainSearch::reasonNotToAsk(std::size_t index) const {
  if (!m_shared.m_transport)
    return "servers are not asked here";
  std::vector<DirectoryStore> stores = storesBefore(index);
  if (stores.empty())
    return "there is no default store; name a cache";
  if (std::optional<DirectoryStore> spare = spareStore())
    stores.push_back(*std::move(spare));
  const auto isUsable = [](const DirectoryStore& store) { return store.reasonAgainst().empty(); };
  if (std::none_of(stores.begin(), stores.end(), isUsable))
    return "no store can take its files";
  const std::string reason = m_shared.m_servers.reasonAgainst(m_chain.stores[index].url->origin());
  return reason.empty() ? reason : "left alone: " + reason;
}

bool ChainSearch::mayAsk(std::size_t index,
                         const Place& place,
                         const std::string& key,
                         const DirectoryStore* notes) {
  const Url& url = *m_chain.stores[index].url;
  if (std::string reason = reasonNotToAsk(index); !reason.empty()) {
    answer(StoreOutcome::kLeftAlone, url.shownBelow({}), reason);
    return false;
  }
  if (m_shared.m_misses.isMissing(key, notes)) {
    answer(StoreOutcome::kLeftAlone,
           url.shownBelow(place.components(false, place.file)),
           "was missing a while ago");
    return false;
  }
  return true;
}

/// Each layout has its own addresses and so its own answer, until something speaks against the
/// server.
std::string ChainSearch::tryServer(std::size_t index) {
  for (const Place& place : m_sought.places) {
    if (!place.onServers)
      continue;
    m_answer = {};
    std::string path = askFor(index, place);
    if (m_isUndecided)
      return {};
    tellWatcher(m_chain.stores[index]);
    if (!path.empty() || m_progress.isCanceled() || !reasonNotToAsk(index).empty())
      return path;
  }
  return {};
}

std::string ChainSearch::askFor(std::size_t index, const Place& place) {
  const Url& url = *m_chain.stores[index].url;
  const auto [key, mayBeStored] = missKey(url, place.components(false, place.file));
  const std::optional<DirectoryStore> store = mayBeStored ? nearestStore(index) : std::nullopt;
  const DirectoryStore* notes = store ? &*store : nullptr;
  if (!m_request.isNearOnly)
    sweep(storesBefore(index));
  std::string path = trySpare(index);
  if (!path.empty() || m_isUndecided || !mayAsk(index, place, key, notes))
    return path;
  m_isUndecided = m_request.isNearOnly;
  return m_isUndecided ? std::string() : tryServerAlone(index, place, key, notes);
}

/// Nobody else asks the server for the file meanwhile.
std::string ChainSearch::tryServerAlone(std::size_t index,
                                        const Place& place,
                                        const std::string& key,
                                        const DirectoryStore* notes) {
  const Url& url = *m_chain.stores[index].url;
  const KeyGate::Hold hold(m_shared.m_gate, key, [this] { return m_progress.tick(); });
  if (!hold.isTaken()) {
    answer(StoreOutcome::kLeftAlone,
           url.shownBelow(place.components(false, place.file)),
           "is being asked for it already");
    return {};
  }
  if (hold.hasWaited()) {
    std::string path = wasBrought(storesBefore(index));
    if (path.empty())
      path = trySpare(index);
    if (!path.empty() || !mayAsk(index, place, key, notes))
      return path;
  }
  // What tells the right file is in the binary, for everybody to read.
  if (!url.isSecure && !isOnThisMachine(url) && m_shared.isFirstQuestion(url.origin()))
    say(url.origin(), "is not asked over https: anybody on the way can exchange files");
  Answers answers;
  const std::optional<bool> hasTwoTiers = place.isKeyed ? askTiers(url) : false;
  if (!hasTwoTiers)
    return {};
  std::string path = askServer(index, place, *hasTwoTiers, answers);
  if (path.empty() && answers.isMissing && !m_progress.isCanceled())
    m_shared.m_misses.remember(key, answers.isForGood ? notes : nullptr);
  return path;
}

std::optional<bool> ChainSearch::askTiers(const Url& url) {
  const std::string address = url.below({});
  if (const std::optional<bool> known = m_shared.tiersOf(address))
    return known;
  NullSink sink;
  const Progress::Preliminary preliminary(m_progress);
  const FetchResult result =
      fetch(*m_shared.m_transport, url.below({"index2.txt"}), m_settings, m_progress, sink);
  // It is there also when it is empty, or when not all of it comes. A page for people, or a
  // redirect that leads nowhere, stands for what is not there.
  const bool hasTwoTiers =
      result.kind == Kind::kDone || result.kind == Kind::kSinkFull || result.kind == Kind::kCutOff;
  const bool isAnswer = hasTwoTiers || result.kind == Kind::kMissing ||
                        result.kind == Kind::kPage || result.kind == Kind::kRefused;
  if (isAnswer || (m_sought.elf && result.status != 0)) {
    say(url.shownBelow({"index2.txt"}), hasTwoTiers ? "there" : result.reason);
  } else {
    answer(StoreOutcome::kFailed, url.shownBelow({"index2.txt"}), result.reason);
    Answers unused;
    judgeFailure(url, result, unused);
    return std::nullopt;
  }
  m_shared.rememberTiers(address, hasTwoTiers);
  return hasTwoTiers;
}

std::string ChainSearch::askServer(std::size_t index,
                                   const Place& place,
                                   bool hasTwoTiers,
                                   Answers& answers) {
  std::vector<std::string> names = {place.file};
  if (place.isKeyed)
    names.push_back(compressedName(place.file));
  for (const std::string& name : names) {
    std::string path = download(index, place.components(hasTwoTiers, name), answers);
    if (!path.empty() || !answers.isMissing || m_progress.isCanceled())
      return path;
  }
  return {};
}

std::string ChainSearch::download(std::size_t index,
                                  const std::vector<std::string>& components,
                                  Answers& answers) {
  const Url& url = *m_chain.stores[index].url;
  const std::string shown = url.shownBelow(components);
  LateFile sink([this, index](std::optional<Delivery>& delivery) {
    delivery.emplace(storesBefore(index), spareStore(), m_sought, m_settings, m_progress);
  });
  const FetchResult result =
      fetch(*m_shared.m_transport, url.below(components), m_settings, m_progress, sink);
  answer(outcomeOf(result.kind), shown, result.reason, sink.bytes());
  if (result.kind != Kind::kDone) {
    judgeFailure(url, result, answers);
    return {};
  }
  DeliveryResult delivered = sink.deliver();
  answers.isForGood = false;
  if (!delivered.path.empty())
    return delivered.path;
  const StoreOutcome outcome =
      delivered.isFilesFault ? StoreOutcome::kMismatch : StoreOutcome::kFailed;
  answer(outcome, shown, delivered.reason, sink.bytes());
  // The server has it; that our stores did not take it is over soon, maybe.
  answers.isMissing = answers.isMissing && delivered.isFilesFault;
  return {};
}

void ChainSearch::judgeFailure(const Url& url, const FetchResult& result, Answers& answers) {
  if (result.kind == Kind::kMissing) {
    answers.isForGood = answers.isForGood && result.status != 403;
    return;
  }
  answers.isForGood = false;
  if (result.kind == Kind::kRefused || result.kind == Kind::kPage ||
      (m_sought.elf && result.status >= 500))
    return;  // of this file, for now
  answers.isMissing = false;
  if (result.kind == Kind::kTrouble)
    m_shared.m_servers.setAside(url.origin(), result.reason, timeAside(result, m_settings));
}

}  // namespace symsrv_1_0::internal
