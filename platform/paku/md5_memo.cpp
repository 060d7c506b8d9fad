// One list, the one used last in front, and a way into it by the file's place on the disk.

#include "paku/md5_memo.h"

#include <algorithm>

namespace PAKU_3_1::internal {
namespace {

Md5Memo s_memo;  // not made when it is used first: it would go before objects of the program that
                 // use it

}  // namespace

std::int64_t nanosecondsNow() {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  return std::chrono::duration_cast<std::chrono::nanoseconds>(now).count();
}

Md5Memo& Md5Memo::instance() {
  return s_memo;
}

std::optional<std::wstring> Md5Memo::find(const FileState& state) {
  const std::lock_guard guard(m_lock);
  const auto found = m_byPlace.find({state.device, state.file});
  if (found == m_byPlace.end() || found->second->state != state)
    return std::nullopt;
  m_known.splice(m_known.begin(), m_known, found->second);
  ++m_hits;
  return found->second->md5;
}

void Md5Memo::remember(const FileState& state, std::int64_t begun, const std::wstring& md5) {
  if (std::max(state.modified, state.changed) >= begun - m_rest)
    return;
  const std::lock_guard guard(m_lock);
  const Place place{state.device, state.file};
  if (const auto found = m_byPlace.find(place); found != m_byPlace.end()) {
    *found->second = {state, md5};
    m_known.splice(m_known.begin(), m_known, found->second);
    return;
  }
  const auto entry = m_byPlace.try_emplace(place).first;
  try {
    m_known.push_front({state, md5});
  } catch (...) {
    m_byPlace.erase(entry);
    throw;
  }
  entry->second = m_known.begin();
  if (m_known.size() <= kMostFiles)
    return;
  m_byPlace.erase({m_known.back().state.device, m_known.back().state.file});
  m_known.pop_back();
}

void Md5Memo::clear() {
  const std::lock_guard guard(m_lock);
  m_byPlace.clear();
  m_known.clear();
}

std::size_t Md5Memo::size() {
  const std::lock_guard guard(m_lock);
  return m_known.size();
}

}  // namespace PAKU_3_1::internal
