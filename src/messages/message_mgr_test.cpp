// The message manager: one at a time, eleven registrations, twelve locks.

#include "messages/message_mgr.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "core/lock.h"
#include "messages/msg_container.h"
#include "quiver/messages.h"
#include "quiver/ref_count.h"

namespace QV_2_9 {
namespace {

// What the interface spells out for one kind.
template <class Message,
          void (IMessageMgr::*setMessage)(ObjectPtr<Message>),
          ObjectPtr<Message> (IMessageMgr::*getMessage)(),
          ILock* (IMessageMgr::*getMessageLock)()>
struct Kind {
  using Interface = Message;
  static void set(IMessageMgr& manager, ObjectPtr<Message> message) {
    (manager.*setMessage)(message);
  }
  static ObjectPtr<Message> get(IMessageMgr& manager) { return (manager.*getMessage)(); }
  static ILock* lock(IMessageMgr& manager) { return (manager.*getMessageLock)(); }
};

using BinChecksum = Kind<IBinChecksumMismatchMessage,
                         &IMessageMgr::setBinChecksumMismatchMessage,
                         &IMessageMgr::getBinChecksumMismatchMessage,
                         &IMessageMgr::getBinChecksumMismatchMessageLock>;
using SymChecksum = Kind<ISymChecksumMismatchMessage,
                         &IMessageMgr::setSymChecksumMismatchMessage,
                         &IMessageMgr::getSymChecksumMismatchMessage,
                         &IMessageMgr::getSymChecksumMismatchMessageLock>;
using SrcChecksum = Kind<ISrcChecksumMismatchMessage,
                         &IMessageMgr::setSrcChecksumMismatchMessage,
                         &IMessageMgr::getSrcChecksumMismatchMessage,
                         &IMessageMgr::getSrcChecksumMismatchMessageLock>;
using ModificationTime = Kind<IModificationTimeMismatchMessage,
                              &IMessageMgr::setModificationTimeMismatchMessage,
                              &IMessageMgr::getModificationTimeMismatchMessage,
                              &IMessageMgr::getModificationTimeMismatchMessageLock>;
using Size = Kind<ISizeMismatchMessage,
                  &IMessageMgr::setSizeMismatchMessage,
                  &IMessageMgr::getSizeMismatchMessage,
                  &IMessageMgr::getSizeMismatchMessageLock>;
using UpToDate = Kind<ISourceFileUpToDateMessage,
                      &IMessageMgr::setSourceFileUpToDateMessage,
                      &IMessageMgr::getSourceFileUpToDateMessage,
                      &IMessageMgr::getSourceFileUpToDateMessageLock>;
using IsDirectory = Kind<IFileIsDirectoryMessage,
                         &IMessageMgr::setFileIsDirectoryMessage,
                         &IMessageMgr::getFileIsDirectoryMessage,
                         &IMessageMgr::getFileIsDirectoryMessageLock>;
using NotReadable = Kind<IFileIsNotReadableMessage,
                         &IMessageMgr::setFileIsNotReadableMessage,
                         &IMessageMgr::getFileIsNotReadableMessage,
                         &IMessageMgr::getFileIsNotReadableMessageLock>;
using DoesNotExist = Kind<IFileDoesNotExistMessage,
                          &IMessageMgr::setFileDoesNotExistMessage,
                          &IMessageMgr::getFileDoesNotExistMessage,
                          &IMessageMgr::getFileDoesNotExistMessageLock>;
using InvalidSymbolFile = Kind<IInvalidSymbolFileMessage,
                               &IMessageMgr::setInvalidSymbolFileMessage,
                               &IMessageMgr::getInvalidSymbolFileMessage,
                               &IMessageMgr::getInvalidSymbolFileMessageLock>;
using ArchMismatch = Kind<IFileArchMismatchMessage,
                          &IMessageMgr::setFileArchMismatchMessage,
                          &IMessageMgr::getFileArchMismatchMessage,
                          &IMessageMgr::getFileArchMismatchMessageLock>;

template <class... Kinds>
struct KindList {
  using Types = testing::Types<Kinds...>;
};

using AllKinds = KindList<BinChecksum,
                          SymChecksum,
                          SrcChecksum,
                          ModificationTime,
                          Size,
                          UpToDate,
                          IsDirectory,
                          NotReadable,
                          DoesNotExist,
                          InvalidSymbolFile,
                          ArchMismatch>;

// Tells when it dies.
template <class Interface>
class MortalMessage : public RefCountImpl<Interface> {
 protected:
  explicit MortalMessage(std::function<void()> onDeath) : m_onDeath(std::move(onDeath)) {}
  ~MortalMessage() override {
    if (m_onDeath)
      m_onDeath();
  }

 private:
  std::function<void()> m_onDeath;
};

// Writes the detail, or a text of its own for the kinds that are told none.
template <class Interface>
class Message final : public MortalMessage<Interface> {
 public:
  explicit Message(std::function<void()> onDeath = {})
      : MortalMessage<Interface>(std::move(onDeath)) {}
  void formatMessage(IMsgContainer& container, const wchar_t* detail) override {
    container.setMessage(detail);
  }
};

template <class Interface>
requires requires(Interface& message, IMsgContainer& container) {
  message.formatMessage(container);
}
class Message<Interface> final : public MortalMessage<Interface> {
 public:
  explicit Message(std::function<void()> onDeath = {})
      : MortalMessage<Interface>(std::move(onDeath)) {}
  void formatMessage(IMsgContainer& container) override { container.setMessage(L"text"); }
};

std::uint32_t countOf(IQVObject* object) {
  object->addRef();
  return object->release();
}

template <class K>
class MessageKind : public testing::Test {
 protected:
  ObjectPtr<IMessageMgr> m_manager = IMessageMgr::create();
};

TYPED_TEST_SUITE(MessageKind, AllKinds::Types);

TYPED_TEST(MessageKind, IsNotRegisteredAtFirst) {
  EXPECT_FALSE(TypeParam::get(*this->m_manager));
}

TYPED_TEST(MessageKind, IsHeldUntilReplaced) {
  using Interface = typename TypeParam::Interface;
  int deaths = 0;
  TypeParam::set(*this->m_manager, new Message<Interface>([&deaths] { ++deaths; }));
  EXPECT_TRUE(TypeParam::get(*this->m_manager));
  EXPECT_EQ(deaths, 0);
  const ObjectPtr<Interface> second(new Message<Interface>);
  TypeParam::set(*this->m_manager, second);
  EXPECT_EQ(deaths, 1);
  EXPECT_EQ(TypeParam::get(*this->m_manager).get(), second.get());
  EXPECT_EQ(countOf(second.get()), 2u);
}

TYPED_TEST(MessageKind, IsClearedByNull) {
  using Interface = typename TypeParam::Interface;
  const ObjectPtr<Interface> message(new Message<Interface>);
  TypeParam::set(*this->m_manager, message);
  TypeParam::set(*this->m_manager, nullptr);
  EXPECT_FALSE(TypeParam::get(*this->m_manager));
  EXPECT_EQ(countOf(message.get()), 1u);
}

TYPED_TEST(MessageKind, KeepsItsLockForEveryManager) {
  ILock* const lock = TypeParam::lock(*this->m_manager);
  ASSERT_NE(lock, nullptr);
  EXPECT_EQ(TypeParam::lock(*this->m_manager), lock);
  this->m_manager = ObjectPtr<IMessageMgr>();
  this->m_manager = IMessageMgr::create();
  EXPECT_EQ(TypeParam::lock(*this->m_manager), lock);
}

template <class... Kinds>
std::vector<ILock*> locksOf(IMessageMgr& manager, KindList<Kinds...>) {
  return {Kinds::lock(manager)...};
}

template <class... Kinds>
void registerAll(IMessageMgr& manager,
                 const std::function<void(int)>& onDeath,
                 KindList<Kinds...>) {
  int index = 0;
  const auto registerOne = [&]<class K>(K*) {
    const int number = index++;
    K::set(manager, new Message<typename K::Interface>([onDeath, number] { onDeath(number); }));
  };
  (registerOne(static_cast<Kinds*>(nullptr)), ...);
}

TEST(MessageMgr, KindsHaveLocksOfTheirOwn) {
  const ObjectPtr<IMessageMgr> manager = IMessageMgr::create();
  const std::vector<ILock*> locks = locksOf(*manager, AllKinds());
  EXPECT_EQ(locks.size(), 11u);
  EXPECT_EQ(std::set<ILock*>(locks.begin(), locks.end()).size(), 11u);
}

void lockAll(const std::vector<ILock*>& locks) QV_NO_THREAD_SAFETY_ANALYSIS {
  for (ILock* lock : locks) lock->lock();
}

void unlockAll(const std::vector<ILock*>& locks) QV_NO_THREAD_SAFETY_ANALYSIS {
  for (ILock* lock : locks) lock->unlock();
}

// With every kind's lock held here, another thread can still take and give references, which
// needs the manager's lock: so that is a twelfth.
TEST(MessageMgr, ManagerLockIsNoneOfTheKindsLocks) {
  const ObjectPtr<IMessageMgr> manager = IMessageMgr::create();
  const std::vector<ILock*> locks = locksOf(*manager, AllKinds());
  lockAll(locks);
  std::thread([] { EXPECT_TRUE(IMessageMgr::create()); }).join();
  unlockAll(locks);
}

TEST(MessageMgr, RegistrationTakesNoLock) {
  const ObjectPtr<IMessageMgr> manager = IMessageMgr::create();
  ILock* const lock = manager->getSizeMismatchMessageLock();
  lock->lock();
  std::thread([&manager] {
    manager->setSizeMismatchMessage(nullptr);
    EXPECT_FALSE(manager->getSizeMismatchMessage());
  }).join();
  lock->unlock();
}

/// The count of what several threads refer to needs a lock, one of the class's own.
class SharedMessage final : public RefCountImpl<ISizeMismatchMessage> {
 public:
  SharedMessage() : RefCountImpl(&s_countLock) {}
  void formatMessage(IMsgContainer& container, const wchar_t*) override {
    container.setMessage(L"size");
  }

 private:
  static inline QVLock s_countLock;
};

TEST(MessageMgr, MessageIsReplacedUnderItsLockWhileOthersTakeIt) {
  const ObjectPtr<IMessageMgr> manager = IMessageMgr::create();
  manager->setSizeMismatchMessage(new SharedMessage);
  std::atomic<bool> isOver{false};
  std::vector<std::thread> searches;
  for (int i = 0; i < 3; ++i) {
    searches.emplace_back([&manager, &isOver] {
      while (!isOver) {
        MsgContainer container;
        manager->getSizeMismatchMessage()->formatMessage(container, L"");
        EXPECT_STREQ(container.getMessage(), L"size");
      }
    });
  }
  for (int round = 0; round < 2000; ++round) {
    const LockGuard guard(manager->getSizeMismatchMessageLock());
    manager->setSizeMismatchMessage(new SharedMessage);
  }
  isOver = true;
  for (std::thread& search : searches) search.join();
  EXPECT_EQ(countOf(manager->getSizeMismatchMessage().get()), 2u);
}

TEST(MessageMgr, IsOneObjectWhileSomebodyHoldsIt) {
  const ObjectPtr<IMessageMgr> first = IMessageMgr::create();
  const ObjectPtr<IMessageMgr> second = IMessageMgr::create();
  EXPECT_EQ(first.get(), second.get());
  EXPECT_EQ(countOf(first.get()), 2u);
}

TEST(MessageMgr, BeginsAfreshWhenEveryReferenceIsGone) {
  int deaths = 0;
  ObjectPtr<IMessageMgr> manager = IMessageMgr::create();
  registerAll(
      *manager, [&deaths](int) { ++deaths; }, AllKinds());
  manager = ObjectPtr<IMessageMgr>();
  EXPECT_EQ(deaths, 11);
  manager = IMessageMgr::create();
  EXPECT_EQ(countOf(manager.get()), 1u);
  EXPECT_FALSE(manager->getBinChecksumMismatchMessage());
  EXPECT_FALSE(manager->getFileArchMismatchMessage());
}

TEST(MessageMgr, ReleasesMessagesInReverseOrder) {
  std::vector<int> order;
  ObjectPtr<IMessageMgr> manager = IMessageMgr::create();
  registerAll(
      *manager, [&order](int number) { order.push_back(number); }, AllKinds());
  manager = ObjectPtr<IMessageMgr>();
  EXPECT_EQ(order, (std::vector<int>{10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0}));
}

TEST(MessageMgr, MessageThatAsksForAManagerWhileItDiesGetsANewOne) {
  ObjectPtr<IMessageMgr> fresh;
  ObjectPtr<IMessageMgr> manager = IMessageMgr::create();
  manager->setFileIsDirectoryMessage(new Message<IFileIsDirectoryMessage>);
  manager->setSizeMismatchMessage(new Message<ISizeMismatchMessage>([&fresh] {
    fresh = IMessageMgr::create();
    // The old manager still held this one a moment ago.
    EXPECT_FALSE(fresh->getSizeMismatchMessage());
    EXPECT_FALSE(fresh->getFileIsDirectoryMessage());
  }));
  manager = ObjectPtr<IMessageMgr>();
  ASSERT_TRUE(fresh);
  EXPECT_EQ(IMessageMgr::create().get(), fresh.get());
  EXPECT_EQ(countOf(fresh.get()), 1u);
}

TEST(MessageMgr, MessageMayMakeAndDropAManagerWhileItDies) {
  bool asked = false;
  ObjectPtr<IMessageMgr> manager = IMessageMgr::create();
  manager->setSizeMismatchMessage(new Message<ISizeMismatchMessage>([&asked] {
    IMessageMgr::create();
    asked = true;
  }));
  manager = ObjectPtr<IMessageMgr>();
  EXPECT_TRUE(asked);
}

TEST(MessageMgr, MessageWritesIntoTheContainer) {
  MsgContainer container;
  const ObjectPtr<IMessageMgr> manager = IMessageMgr::create();
  manager->setSizeMismatchMessage(new Message<ISizeMismatchMessage>);
  manager->getSizeMismatchMessage()->formatMessage(container, L"detail");
  EXPECT_STREQ(container.getMessage(), L"detail");
}

TEST(MessageMgr, MessageWithoutADetailWritesIntoTheContainer) {
  MsgContainer container;
  const ObjectPtr<IMessageMgr> manager = IMessageMgr::create();
  manager->setFileIsDirectoryMessage(new Message<IFileIsDirectoryMessage>);
  manager->getFileIsDirectoryMessage()->formatMessage(container);
  EXPECT_STREQ(container.getMessage(), L"text");
}

// A text that stays empty counts as none.
TEST(MessageMgr, MessageThatWritesAnEmptyTextWritesNothing) {
  MsgContainer container;
  const ObjectPtr<IMessageMgr> manager = IMessageMgr::create();
  manager->setSizeMismatchMessage(new Message<ISizeMismatchMessage>);
  manager->getSizeMismatchMessage()->formatMessage(container, L"");
  EXPECT_EQ(container.getMessage(), nullptr);
}

TEST(MessageMgr, CanBeMadeAndDroppedOnSeveralThreads) {
  std::atomic<int> missing{0};
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&missing] {
      for (int round = 0; round < 500; ++round) {
        const ObjectPtr<IMessageMgr> manager = IMessageMgr::create();
        if (manager->getVersion() != 1)
          ++missing;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(missing, 0);
  EXPECT_EQ(countOf(IMessageMgr::create().get()), 1u);
}

}  // namespace
}  // namespace QV_2_9
