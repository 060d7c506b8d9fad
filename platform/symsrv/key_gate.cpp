// Keys and who holds them.

#include "symsrv/key_gate.h"

#include <algorithm>
#include <chrono>

namespace symsrv_1_0::internal {
namespace {

constexpr std::chrono::milliseconds kBetweenQuestions{50};

}  // namespace

bool KeyGate::isHolder(std::thread::id thread) const {
  return std::any_of(m_holders.begin(), m_holders.end(), [thread](const auto& holder) {
    return holder.second == thread;
  });
}

KeyGate::Hold::Hold(KeyGate& gate, std::string key, const std::function<bool()>& goOn)
    : m_gate(gate), m_key(std::move(key)) {
  std::unique_lock lock(m_gate.m_lock);
  while (m_gate.m_holders.count(m_key) != 0) {
    if (m_gate.isHolder(std::this_thread::get_id()))
      return;
    m_hasWaited = true;
    m_gate.m_freed.wait_for(lock, kBetweenQuestions);
    lock.unlock();  // foreign code may take its time, and may come back here
    if (!goOn())
      return;
    lock.lock();
  }
  m_gate.m_holders.emplace(m_key, std::this_thread::get_id());
  m_isTaken = true;
}

KeyGate::Hold::~Hold() {
  if (!m_isTaken)
    return;
  {
    const std::lock_guard guard(m_gate.m_lock);
    m_gate.m_holders.erase(m_key);
  }
  m_gate.m_freed.notify_all();
}

}  // namespace symsrv_1_0::internal
