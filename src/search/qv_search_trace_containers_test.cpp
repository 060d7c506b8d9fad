// What the trace of a new file search asks of a caller's own containers.

#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "vesk/trace_capture.h"

#include "core/trace.h"
#include "quiver/file_search.h"
#include "quiver/ref_count.h"

namespace QV_2_9 {
namespace {

/// Counts how often it is asked for directories.
class CountingContainer : public RefCountImpl<ISearchDirContainer> {
 public:
  int asked = 0;
  ObjectPtr<ISearchDirIterator> createIterator(search_category_t) override {
    ++asked;
    return nullptr;
  }
};

class ThrowingContainer final : public CountingContainer {
 public:
  ObjectPtr<ISearchDirIterator> createIterator(search_category_t category) override {
    CountingContainer::createIterator(category);
    throw std::runtime_error("no directories today");
  }
};

class TracedContainer : public testing::Test {
 protected:
  template <class Container>
  static Container* addTo(const ObjectPtr<IEditableSearchEnv>& env) {
    auto* const container = new Container;
    env->setSearchDirs(container);
    return container;
  }

  const ObjectPtr<IEditableSearchEnv> m_env = IEditableSearchEnv::create();
};

TEST_F(TracedContainer, IsNotAskedWhileTracingIsOff) {
  const vesk_1_8::TraceSilence silence(internal::traceChannel());
  const auto* container = addTo<CountingContainer>(m_env);
  EXPECT_TRUE(IFileSearch::create(m_env));
  EXPECT_EQ(container->asked, 0);
}

TEST_F(TracedContainer, IsAskedForEachDumpWhileOn) {
  const vesk_1_8::TraceCapture capture(internal::traceChannel());
  const auto* container = addTo<CountingContainer>(m_env);
  EXPECT_TRUE(IFileSearch::create(m_env));
  EXPECT_EQ(container->asked, 4);
}

TEST_F(TracedContainer, KeepsNoSearchFromBeingMadeWhenItThrows) {
  const vesk_1_8::TraceCapture capture(internal::traceChannel());
  const auto* container = addTo<ThrowingContainer>(m_env);
  EXPECT_TRUE(IFileSearch::create(m_env));
  EXPECT_EQ(container->asked, 1);
  ASSERT_EQ(capture.records().size(), 1u);
  EXPECT_EQ(capture.records()[0].text, "Search environment: ");
}

}  // namespace
}  // namespace QV_2_9
