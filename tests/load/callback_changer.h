// Attaches, replaces, disconnects and destroys the callbacks of the shared search, and registers
// messages.
//
// The environment is changed while no lookup runs. A callback is disconnected and destroyed at any
// time, while lookups run.

#pragma once

#include <chrono>
#include <memory>
#include <random>
#include <thread>

#include "load/load_messages.h"
#include "load/looker.h"

namespace quiver_load {

/// Hears of the end of a callback before the environment does, and takes its time: meanwhile
/// lookups find the callback there and wait.
class SlowHandler final : public QV_2_9::IEventHandler {
 public:
  void onGeneratorChanged(QV_2_9::EventGenerator*) override {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
};

class CallbackChanger final {
 public:
  CallbackChanger(const Load& load, OwnLooker::Lasting& lasting, unsigned seed)
      : m_load(load), m_lasting(lasting), m_random(seed) {}

  /// Changes until the load is over.
  void run();

 private:
  void changeOnce();
  void disconnectLasting();
  template <class Callback, class Set>
  void change(std::unique_ptr<Callback>& callback, const Set& set);
  template <class Callback, class Set>
  void attach(Callback* callback, const Set& set);

  const Load& m_load;
  OwnLooker::Lasting& m_lasting;
  std::minstd_rand m_random;
  LoadMessages m_messages;
  SlowHandler m_slowHandler;  // goes after the callbacks
  std::unique_ptr<LoadSearchStarted> m_started;
  std::unique_ptr<LoadFilesFound> m_filesFound;
  std::unique_ptr<LoadNoFilesFound> m_noFilesFound;
  std::unique_ptr<LoadPolicy> m_policy;
};

}  // namespace quiver_load
