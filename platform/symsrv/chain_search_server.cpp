// The servers of a chain.
//
// A file that is missing is asked for under its compressed name too, and then remembered as
// missing. Any other trouble sets the server aside. Servers of debug files for ELF answer questions
// that they do not understand with "unavailable": for these such an answer is a miss.

#include "symsrv/chain_search.h"

namespace symsrv_1_0::internal {
namespace {

using Kind = FetchResult::Kind;

/// Makes a file when the first byte comes: what is missing leaves no trace.
class LateFile final : public IFetchSink {
 public:
  LateFile(std::vector<DirectoryStore> stores,
           const SoughtFile& sought,
           const Settings& settings,
           Progress& progress)
      : m_stores(std::move(stores)), m_sought(sought), m_settings(settings), m_progress(progress) {}

  bool write(const void* bytes, std::size_t count) override {
    if (!m_delivery) {
      m_delivery.emplace(m_stores, m_sought, m_settings, m_progress);
      m_file = m_delivery->hasPlace() ? m_delivery->newRawFile() : nullptr;
    }
    m_bytes += count;
    return m_file && m_file->write(bytes, count);
  }
  bool clear() override {
    m_bytes = 0;
    return !m_file || m_file->clear();
  }
  std::uint64_t bytes() const { return m_bytes; }

  DeliveryResult deliver() {
    return m_file ? m_delivery->deliver(std::move(m_file)) : DeliveryResult{{}, "empty"};
  }

 private:
  const std::vector<DirectoryStore> m_stores;
  const SoughtFile& m_sought;
  const Settings& m_settings;
  Progress& m_progress;
  std::optional<Delivery> m_delivery;
  std::unique_ptr<NewFile> m_file;
  std::uint64_t m_bytes = 0;
};

/// For answers of which only the status counts.
class NullSink final : public IFetchSink {
 public:
  bool write(const void*, std::size_t) override { return true; }
  bool clear() override { return true; }
};

StoreOutcome outcomeOf(Kind kind) {
  if (kind == Kind::kDone)
    return StoreOutcome::kFound;
  return kind == Kind::kMissing ? StoreOutcome::kMissing : StoreOutcome::kFailed;
}

/// Returns what a miss is remembered by. With a query, which may be a secret, nothing may reach the
/// disk; the second value tells.
std::pair<std::string, bool> missKey(const Url& url, const std::vector<std::string>& components) {
  Url plain = url;
  plain.userInfo.clear();
  return {plain.below(components), url.query.empty()};
}

}  // namespace

std::string ChainSearch::tryServer(std::size_t index, const Place& place) {
  const Url& url = *m_chain.stores[index].url;
  if (!m_shared.m_transport) {
    answer(StoreOutcome::kLeftAlone, url.shownBelow({}), "servers are not asked here");
    return {};
  }
  if (std::string reason = m_shared.m_servers.reasonAgainst(url.origin()); !reason.empty()) {
    answer(StoreOutcome::kLeftAlone, url.shownBelow({}), "left alone: " + reason);
    return {};
  }
  const auto [key, mayBeStored] = missKey(url, place.components(false, place.file));
  const std::string store = mayBeStored ? nearestStore() : std::string();
  if (!store.empty())
    m_shared.sweepOnce(store);
  if (m_shared.m_misses.isMissing(key, store)) {
    answer(StoreOutcome::kLeftAlone,
           url.shownBelow(place.components(false, place.file)),
           "was missing a while ago");
    return {};
  }
  Answers answers;
  const std::optional<bool> hasTwoTiers = place.isKeyed ? askTiers(url) : false;
  if (!hasTwoTiers)
    return {};
  std::string path = askServer(index, place, *hasTwoTiers, answers);
  if (path.empty() && answers.isMissing && !m_progress.isCanceled())
    m_shared.m_misses.remember(key, answers.isForGood ? store : std::string());
  return path;
}

std::optional<bool> ChainSearch::askTiers(const Url& url) {
  const std::string address = url.below({});
  if (const std::optional<bool> known = m_shared.tiersOf(address))
    return known;
  NullSink sink;
  const FetchResult result =
      fetch(*m_shared.m_transport, url.below({"index2.txt"}), m_settings, m_progress, sink);
  const bool isAnswer = result.kind == Kind::kDone || result.kind == Kind::kMissing;
  if (isAnswer || (m_sought.elf && result.status != 0)) {
    say(url.shownBelow({"index2.txt"}), result.reason);
  } else {
    answer(StoreOutcome::kFailed, url.shownBelow({"index2.txt"}), result.reason);
    Answers unused;
    judgeFailure(url, result, unused);
    return std::nullopt;
  }
  m_shared.rememberTiers(address, result.kind == Kind::kDone);
  return result.kind == Kind::kDone;
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
  LateFile sink(storesBefore(index), m_sought, m_settings, m_progress);
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
  if (result.kind == Kind::kRefused || (m_sought.elf && result.status >= 500))
    return;  // of this file, for now
  answers.isMissing = false;
  if (result.kind == Kind::kTrouble)
    m_shared.m_servers.setAside(url.origin(), result.reason);
}

}  // namespace symsrv_1_0::internal
