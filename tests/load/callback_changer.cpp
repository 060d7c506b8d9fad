// Changes one callback after the other.

#include "load/callback_changer.h"

#include <chrono>
#include <thread>
#include <utility>

namespace quiver_load {

using namespace QV_2_9;

namespace {

constexpr std::chrono::milliseconds kPause{8};

}  // namespace

void CallbackChanger::run() {
  while (!m_load.isOver.load(std::memory_order_relaxed)) {
    changeOnce();
    std::this_thread::sleep_for(kPause);
  }
}

void CallbackChanger::changeOnce() {
  switch (m_random() % 6) {
    case 0:
      return change(m_started, [](IEditableSearchEnv& env, LoadSearchStarted* callback) {
        env.setSearchStartedCallback(callback);
      });
    case 1:
      return change(m_filesFound, [](IEditableSearchEnv& env, LoadFilesFound* callback) {
        env.setFilesFoundCallback(callback);
      });
    case 2:
      return change(m_noFilesFound, [](IEditableSearchEnv& env, LoadNoFilesFound* callback) {
        env.setNoFilesFoundCallback(callback);
      });
    case 3:
      return change(m_policy, [](IEditableSearchEnv& env, LoadPolicy* callback) {
        env.setConfidenceLevelPolicyCallback(callback);
      });
    case 4:
      return disconnectLasting();
    default:
      m_load.shared.change([this](IEditableSearchEnv&) { m_messages.change(); });
      m_load.counts.add(Work::kMessagesChanged);
  }
}

template <class Callback, class Set>
void CallbackChanger::attach(Callback* callback, const Set& set) {
  if (callback)
    callback->addHandler(&m_slowHandler);
  m_load.shared.change([&](IEditableSearchEnv& env) { set(env, callback); });
  m_load.counts.add(Work::kCallbackAttached);
}

template <class Callback, class Set>
void CallbackChanger::change(std::unique_ptr<Callback>& callback, const Set& set) {
  auto next = std::make_unique<Callback>(m_load.frame());
  switch (m_random() % 4) {
    case 0:  // destroyed while it may be called
      callback = nullptr;
      m_load.counts.add(Work::kCallbackDestroyed);
      return attach(next.get(), set), callback.swap(next);
    case 1:  // disconnected while it may be called, and attached again
      if (!callback)
        return;
      callback->disconnectHandlers();
      m_load.counts.add(Work::kCallbackDisconnected);
      return attach(callback.get(), set);
    case 2:  // taken out, then destroyed
      attach(static_cast<Callback*>(nullptr), set);
      callback = nullptr;
      return m_load.counts.add(Work::kCallbackDestroyed);
    default:  // replaced, then destroyed
      attach(next.get(), set);
      callback.swap(next);
  }
}

/// Environments of other threads refer to these at the same time.
void CallbackChanger::disconnectLasting() {
  m_lasting.started.disconnectHandlers();
  m_lasting.policy.disconnectHandlers();
  m_load.counts.add(Work::kCallbackDisconnected);
}

}  // namespace quiver_load
