// Callback objects and holders beside a table of who refers to whom.

#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>

#include "core/lock.h"
#include "fuzz_entries.h"
#include "fuzz_input.h"
#include "quiver/event_generator.h"

namespace quiver_fuzz {
namespace {

QV_2_9::QVSpinSharedLock s_classLock;

class Callback final : public QV_2_9::EventGenerator {
 public:
  QV_2_9::ISpinSharedLock* getLock() override { return &s_classLock; }
};

using Holder = QV_2_9::CallbackHolder<Callback>;

/// Counts what it is told, and may take itself out then.
class Listener final : public QV_2_9::IEventHandler {
 public:
  void onGeneratorChanged(QV_2_9::EventGenerator* generator) override {
    require(generator == nullptr);
    ++told;
    if (leaves)
      leaves->removeHandler(this);
  }

  std::size_t told = 0;
  Callback* leaves = nullptr;
};

constexpr unsigned kCallbacks = 3;
constexpr unsigned kHolders = 5;
constexpr unsigned kListeners = 2;

class Sequence final {
 public:
  explicit Sequence(std::string_view bytes) : m_input(bytes) {}

  ~Sequence() {
    m_holders = {};
    for (unsigned i = 0; i < kCallbacks; ++i) end(i);  // while there are listeners to tell
  }

  Sequence(const Sequence&) = delete;
  Sequence& operator=(const Sequence&) = delete;

  void run() {
    for (int calls = 0; !m_input.isEmpty() && calls < 1000; ++calls) {
      call();
      check();
    }
  }

 private:
  static constexpr unsigned kNobody = kCallbacks;

  void call() {
    const unsigned which = m_input.below(9);
    const unsigned callback = m_input.below(kCallbacks);
    const unsigned holder = m_input.below(kHolders);
    switch (which) {
      case 0:
        return begin(callback);
      case 1:
        return end(callback);
      case 2:
        return attach(holder, callback);
      case 3:
        return assign(holder, m_input.below(kHolders));
      case 4:
        return copy(holder, m_input.below(kHolders));
      case 5:
        return forget(holder);
      case 6:
        return disconnect(callback);
      case 7:
        return listen(callback, m_input.below(kListeners));
      default:
        return stopListening(callback, m_input.below(kListeners));
    }
  }

  void begin(unsigned callback) {
    if (!m_callbacks[callback])
      m_callbacks[callback] = std::make_unique<Callback>();
  }

  void end(unsigned callback) {
    tellOf(callback, nullptr);
    m_callbacks[callback].reset();
  }

  void attach(unsigned holder, unsigned callback) {
    m_holders[holder] = std::make_unique<Holder>(m_callbacks[callback].get());
    m_refersTo[holder] = m_callbacks[callback] ? callback : kNobody;
  }

  void assign(unsigned holder, unsigned from) {
    if (!m_holders[holder] || !m_holders[from])
      return;
    *m_holders[holder] = *m_holders[from];
    m_refersTo[holder] = m_refersTo[from];
  }

  void copy(unsigned holder, unsigned from) {
    if (holder == from || !m_holders[from])
      return;
    m_holders[holder] = std::make_unique<Holder>(*m_holders[from]);
    m_refersTo[holder] = m_refersTo[from];
  }

  void forget(unsigned holder) {
    m_holders[holder].reset();
    m_refersTo[holder] = kNobody;
  }

  void disconnect(unsigned callback) {
    if (!m_callbacks[callback])
      return;
    tellOf(callback, m_callbacks[callback].get());
    m_callbacks[callback]->disconnectHandlers();
  }

  /// Notes what the end of a callback's handlers means. A listener may take itself out of `alive`,
  /// never of a callback that is being destroyed.
  void tellOf(unsigned callback, Callback* alive) {
    for (unsigned& refersTo : m_refersTo)
      if (refersTo == callback)
        refersTo = kNobody;
    for (unsigned i = 0; i < kListeners; ++i) {
      m_mustBeTold[i] += std::exchange(m_registered[callback][i], std::size_t{0});
      m_listeners[i].leaves = m_leaves[i] ? alive : nullptr;
    }
  }

  /// Each listener is with a callback once at most when it takes itself out.
  void listen(unsigned callback, unsigned listener) {
    if (!m_callbacks[callback] || (m_leaves[listener] && m_registered[callback][listener] > 0))
      return;
    m_callbacks[callback]->addHandler(&m_listeners[listener]);
    ++m_registered[callback][listener];
  }

  void stopListening(unsigned callback, unsigned listener) {
    if (!m_callbacks[callback])
      return;
    m_callbacks[callback]->removeHandler(&m_listeners[listener]);
    if (m_registered[callback][listener] > 0)
      --m_registered[callback][listener];
  }

  void check() const {
    for (unsigned i = 0; i < kHolders; ++i)
      require(!m_holders[i] ||
              m_holders[i]->getCallback() ==
                  (m_refersTo[i] == kNobody ? nullptr : m_callbacks[m_refersTo[i]].get()));
    for (unsigned i = 0; i < kListeners; ++i) require(m_listeners[i].told == m_mustBeTold[i]);
    require(s_classLock.count() == 0);
  }

  FuzzInput m_input;
  std::array<Listener, kListeners> m_listeners;
  const std::array<bool, kListeners> m_leaves = {false, true};
  std::array<std::size_t, kListeners> m_mustBeTold = {};
  std::array<std::array<std::size_t, kListeners>, kCallbacks> m_registered = {};
  std::array<unsigned, kHolders> m_refersTo = {kNobody, kNobody, kNobody, kNobody, kNobody};
  std::array<std::unique_ptr<Holder>, kHolders> m_holders;
  std::array<std::unique_ptr<Callback>, kCallbacks> m_callbacks;
};

}  // namespace

void fuzzEvents(std::string_view bytes) {
  Sequence(bytes).run();
}

}  // namespace quiver_fuzz
