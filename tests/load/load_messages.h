// Texts for rejections, registered for a while and taken out again.

#pragma once

#include <mutex>
#include <string_view>

#include "quiver/messages.h"
#include "quiver/ref_count.h"

namespace quiver_load {

inline constexpr std::wstring_view kLoadMessage = L"it is a directory";

/// What guards the count of message objects: searches take references on several threads.
class CountLock final : public QV_2_9::ILock {
 public:
  void lock() QV_NO_THREAD_SAFETY_ANALYSIS override { m_lock.lock(); }
  void unlock() QV_NO_THREAD_SAFETY_ANALYSIS override { m_lock.unlock(); }

 private:
  std::recursive_mutex m_lock;
};

class LoadMessage final : public QV_2_9::RefCountImpl<QV_2_9::IFileIsDirectoryMessage> {
 public:
  LoadMessage() : RefCountImpl(&s_lock) {}

  void formatMessage(QV_2_9::IMsgContainer& container) override {
    container.setMessage(kLoadMessage.data());
  }

 private:
  static inline CountLock s_lock;
};

/// The registration is there for as long as this object has the manager. Between searches only.
class LoadMessages final {
 public:
  void change() {
    if (m_manager) {
      m_manager = nullptr;
      return;
    }
    m_manager = QV_2_9::IMessageMgr::create();
    const QV_2_9::LockGuard guard(m_manager->getFileIsDirectoryMessageLock());
    m_manager->setFileIsDirectoryMessage(
        QV_2_9::ObjectPtr<QV_2_9::IFileIsDirectoryMessage>(new LoadMessage));
  }

 private:
  QV_2_9::ObjectPtr<QV_2_9::IMessageMgr> m_manager;
};

}  // namespace quiver_load
