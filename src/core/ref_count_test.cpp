// Reference counts, and the pointer that keeps objects alive.

#include "quiver/ref_count.h"

#include <cstdint>
#include <functional>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "core/lock.h"
#include "quiver/object.h"

namespace QV_2_9 {
namespace {

class IThing : public IQVObject {
 public:
  virtual int value() = 0;  // 4
};

class IDerivedThing : public IThing {
 public:
  virtual void setValue(int value) = 0;  // 5
};

// Tells when it dies, and may hold the next of a chain.
class Thing final : public RefCountImpl<IDerivedThing> {
 public:
  explicit Thing(std::function<void()> onDeath = {}, ILock* counterLock = nullptr)
      : RefCountImpl(counterLock), m_onDeath(std::move(onDeath)) {}
  ~Thing() override {
    if (m_onDeath)
      m_onDeath();
  }

  int value() override { return m_value; }
  void setValue(int value) override { m_value = value; }

  ObjectPtr<Thing> next;

 private:
  std::function<void()> m_onDeath;
  int m_value = 0;
};

std::function<void()> countInto(int& deaths) {
  return [&deaths] { ++deaths; };
}

// Returns the count without changing it.
std::uint32_t countOf(IQVObject* object) {
  object->addRef();
  return object->release();
}

class CountingObserver final : public internal::IDeleteObserver {
 public:
  void onDelete() override { ++calls; }
  int calls = 0;
};

// Writes down what happens to it.
class LoggingLock final : public ILock {
 public:
  explicit LoggingLock(std::vector<std::string>& log) : m_log(log) {}
  void lock() QV_NO_THREAD_SAFETY_ANALYSIS override { m_log.push_back("lock"); }
  void unlock() QV_NO_THREAD_SAFETY_ANALYSIS override { m_log.push_back("unlock"); }

 private:
  std::vector<std::string>& m_log;
};

TEST(RefCountHelper, CountsFromZero) {
  CountingObserver observer;
  internal::RefCountHelper counter(&observer, nullptr);
  EXPECT_EQ(counter.addRef(), 1u);
  EXPECT_EQ(counter.addRef(), 2u);
  EXPECT_EQ(counter.release(), 1u);
  EXPECT_EQ(observer.calls, 0);
  EXPECT_EQ(counter.release(), 0u);
  EXPECT_EQ(observer.calls, 1);
}

// Intended: there is no guard against giving back what was never taken.
TEST(RefCountHelper, ReleaseAtZeroWrapsAndTellsNobody) {
  CountingObserver observer;
  internal::RefCountHelper counter(&observer, nullptr);
  EXPECT_EQ(counter.release(), 4294967295u);
  EXPECT_EQ(observer.calls, 0);
  EXPECT_EQ(counter.addRef(), 0u);
  EXPECT_EQ(observer.calls, 0);
}

TEST(RefCountHelper, NeedsNoObserver) {
  internal::RefCountHelper counter(nullptr, nullptr);
  counter.addRef();
  EXPECT_EQ(counter.release(), 0u);
}

TEST(RefCountHelper, EveryChangeIsMadeInsideTheLock) {
  std::vector<std::string> log;
  LoggingLock lock(log);
  internal::RefCountHelper counter(nullptr, &lock);
  counter.addRef();
  counter.addRef();
  counter.release();
  EXPECT_EQ(log, (std::vector<std::string>{"lock", "unlock", "lock", "unlock", "lock", "unlock"}));
}

TEST(RefCountImpl, IsDestroyedInsideTheLockAndUnlockedAfterwards) {
  std::vector<std::string> log;
  LoggingLock lock(log);
  auto* thing = new Thing([&log] { log.push_back("destroyed"); }, &lock);
  thing->addRef();
  log.clear();
  EXPECT_EQ(thing->release(), 0u);
  EXPECT_EQ(log, (std::vector<std::string>{"lock", "destroyed", "unlock"}));
}

TEST(RefCountImpl, DestroysItselfWithTheLastReference) {
  int deaths = 0;
  IThing* thing = new Thing(countInto(deaths));
  EXPECT_EQ(thing->addRef(), 1u);
  EXPECT_EQ(thing->addRef(), 2u);
  EXPECT_EQ(thing->release(), 1u);
  EXPECT_EQ(deaths, 0);
  EXPECT_EQ(thing->release(), 0u);
  EXPECT_EQ(deaths, 1);
}

TEST(RefCountImpl, HasVersionOne) {
  const ObjectPtr<IThing> thing(new Thing);
  EXPECT_EQ(thing->getVersion(), 1);
}

TEST(RefCountImpl, CannotBeCopied) {
  EXPECT_FALSE(std::is_copy_constructible_v<Thing>);
  EXPECT_FALSE(std::is_copy_assignable_v<Thing>);
  EXPECT_FALSE(std::is_copy_constructible_v<internal::RefCountHelper>);
  EXPECT_FALSE(std::is_copy_assignable_v<internal::RefCountHelper>);
}

void takeAndDropReferences(const ObjectPtr<IThing>& thing) {
  for (int round = 0; round < 1000; ++round) {
    ObjectPtr<IThing> copy(thing);
    copy = ObjectPtr<IThing>();
  }
}

TEST(RefCountImpl, CountsFromSeveralThreadsUnderAClassWideLock) {
  static QVLock lock;
  int deaths = 0;
  {
    const ObjectPtr<IThing> thing(new Thing(countInto(deaths), &lock));
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) threads.emplace_back([&thing] { takeAndDropReferences(thing); });
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(countOf(thing.get()), 1u);
    EXPECT_EQ(deaths, 0);
  }
  EXPECT_EQ(deaths, 1);
}

TEST(RefCountImpl, LastReferenceMayGoOnAnyThreadUnderAClassWideLock) {
  static QVLock lock;
  for (int round = 0; round < 100; ++round) {
    int deaths = 0;
    auto* thing = new Thing(countInto(deaths), &lock);
    thing->addRef();
    thing->addRef();
    std::thread other([thing] { thing->release(); });
    thing->release();
    other.join();
    EXPECT_EQ(deaths, 1);
  }
}

TEST(ObjectPtr, IsEmptyAtFirst) {
  const ObjectPtr<IThing> empty;
  EXPECT_FALSE(empty);
  EXPECT_EQ(empty.get(), nullptr);
}

TEST(ObjectPtr, FromNullIsEmpty) {
  const ObjectPtr<IThing> empty(static_cast<IThing*>(nullptr));
  EXPECT_FALSE(empty);
}

TEST(ObjectPtr, TakesAReferenceOnARawPointer) {
  auto* thing = new Thing;
  const ObjectPtr<IThing> pointer(thing);
  EXPECT_TRUE(pointer);
  EXPECT_EQ(countOf(thing), 1u);
}

TEST(ObjectPtr, CopyTakesAReferenceOfItsOwn) {
  const ObjectPtr<IThing> first(new Thing);
  ObjectPtr<IThing> copy(first);
  EXPECT_EQ(countOf(first.get()), 2u);
  EXPECT_EQ(copy.get(), first.get());
  copy = ObjectPtr<IThing>();
  EXPECT_EQ(countOf(first.get()), 1u);
}

TEST(ObjectPtr, DestructionReleasesTheObject) {
  int deaths = 0;
  { const ObjectPtr<IThing> pointer(new Thing(countInto(deaths))); }
  EXPECT_EQ(deaths, 1);
}

TEST(ObjectPtr, ConvertsToABaseInterfaceWithAReferenceOfItsOwn) {
  const ObjectPtr<IDerivedThing> derived(new Thing);
  const ObjectPtr<IThing> base = derived;
  EXPECT_EQ(base.get(), derived.get());
  EXPECT_EQ(countOf(base.get()), 2u);
}

TEST(ObjectPtr, GivesAccessToTheObject) {
  const ObjectPtr<IDerivedThing> thing(new Thing);
  thing->setValue(7);
  EXPECT_EQ((*thing).value(), 7);
}

TEST(ObjectPtr, AssignmentReleasesTheOldObjectAndHoldsTheNew) {
  int oldDeaths = 0;
  int newDeaths = 0;
  ObjectPtr<Thing> pointer(new Thing(countInto(oldDeaths)));
  const ObjectPtr<Thing> other(new Thing(countInto(newDeaths)));
  pointer = other;
  EXPECT_EQ(oldDeaths, 1);
  EXPECT_EQ(newDeaths, 0);
  EXPECT_EQ(pointer.get(), other.get());
  EXPECT_EQ(countOf(other.get()), 2u);
}

TEST(ObjectPtr, AssigningAnEmptyPointerReleasesTheObject) {
  int deaths = 0;
  ObjectPtr<Thing> pointer(new Thing(countInto(deaths)));
  pointer = ObjectPtr<Thing>();
  EXPECT_FALSE(pointer);
  EXPECT_EQ(deaths, 1);
}

TEST(ObjectPtr, AssigningTheSameObjectLeavesTheCount) {
  int deaths = 0;
  ObjectPtr<Thing> first(new Thing(countInto(deaths)));
  const ObjectPtr<Thing> second(first);
  ObjectPtr<Thing>& alias = first;
  first = alias;
  EXPECT_EQ(countOf(first.get()), 2u);
  first = second;
  EXPECT_EQ(countOf(first.get()), 2u);
  EXPECT_EQ(deaths, 0);
}

TEST(ObjectPtr, IsEmptyWhileTheOldObjectDies) {
  ObjectPtr<Thing> pointer;
  bool wasEmpty = false;
  pointer = new Thing([&] { wasEmpty = !pointer; });
  const ObjectPtr<Thing> next(new Thing);
  pointer = next;
  EXPECT_TRUE(wasEmpty);
  EXPECT_EQ(pointer.get(), next.get());
}

TEST(ObjectPtr, IsEmptyWhileItsObjectDiesWithIt) {
  bool wasEmpty = false;
  {
    ObjectPtr<Thing> pointer;
    pointer = new Thing([&] { wasEmpty = !pointer; });
  }
  EXPECT_TRUE(wasEmpty);
}

// The source of the assignment lives in the object that the assignment lets go of.
TEST(ObjectPtr, WalksAChainThroughItsOwnLinks) {
  int deaths = 0;
  ObjectPtr<Thing> last(new Thing(countInto(deaths)));
  ObjectPtr<Thing> pointer(new Thing(countInto(deaths)));
  pointer->next = last;
  pointer = pointer->next;
  EXPECT_EQ(deaths, 1);
  EXPECT_EQ(pointer.get(), last.get());
  EXPECT_EQ(countOf(last.get()), 2u);
}

TEST(ObjectPtr, ChainUnwindsFromTheReleaseOfItsRoot) {
  std::vector<std::string> log;
  ObjectPtr<Thing> root(new Thing([&log] { log.push_back("root"); }));
  root->next = new Thing([&log] { log.push_back("middle"); });
  root->next->next = new Thing([&log] { log.push_back("leaf"); });
  root = ObjectPtr<Thing>();
  EXPECT_EQ(log, (std::vector<std::string>{"root", "middle", "leaf"}));
}

// Values cross module boundaries, so the layout is fixed: a table pointer and the object.
TEST(ObjectPtr, IsTwoPointersBig) {
  EXPECT_TRUE(std::has_virtual_destructor_v<ObjectPtr<IThing>>);
  EXPECT_EQ(sizeof(ObjectPtr<IThing>), 2 * sizeof(void*));
}

}  // namespace
}  // namespace QV_2_9
