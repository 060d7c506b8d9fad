// Every operation that makes an object of the library.

#include <ostream>
#include <string>

#include "fault/allocation/allocation_faults.h"
#include "fault/allocation/quiet_callbacks.h"
#include "quiver/quiver.h"

namespace quiver_test {
namespace {

using namespace QV_2_9;
using AnyPtr = ObjectPtr<IQVObject>;

struct Factory {
  const char* title;
  AnyPtr (*create)();
};

void PrintTo(const Factory& factory, std::ostream* out) {
  *out << factory.title;
}

class Create final : public Attempt {
 public:
  explicit Create(AnyPtr (*create)()) : m_create(create) {}

  void run() override { m_object = m_create(); }
  void expectSound(bool hasThrown) override { EXPECT_TRUE(hasThrown || m_object); }
  void expectUsable() override {
    m_object = nullptr;
    EXPECT_TRUE(m_create());
  }

 private:
  AnyPtr (*const m_create)();
  AnyPtr m_object;
};

class FactoryAllocationFaultsPosix : public AllocationFaultsPosix,
                                     public testing::WithParamInterface<Factory> {};

TEST_P(FactoryAllocationFaultsPosix, EndIt) {
  expectNoHarm([] { return std::make_unique<Create>(GetParam().create); });
}

template <class Interface>
AnyPtr create() {
  return Interface::create();
}

CountingJournal s_journal;

const Factory kFactories[] = {
    {"Container", create<IEditableSearchDirContainer>},
    {"Chain", create<ISearchDirChain>},
    {"Environment", create<IEditableSearchEnv>},
    {"Information", create<IEditableEnvironmentInfo>},
    {"Calculator", create<IChecksumCalculator>},
    {"Messages", create<IMessageMgr>},
    {"Contexts", create<IResolutionContextMgr>},
    {"History", create<ISearchHistory>},
    {"Mappings", create<IPathMappings>},
    {"Search", [] { return AnyPtr(IFileSearch::create(IEditableSearchEnv::create())); }},
    {"SearchWithJournal",
     [] { return AnyPtr(createFileSearchWithJournal(IEditableSearchEnv::create(), &s_journal)); }},
    {"Manipulator",
     [] { return AnyPtr(createSearchManipulatorByContext(nullptr, nullptr, nullptr)); }},
};

INSTANTIATE_TEST_SUITE_P(Making,
                         FactoryAllocationFaultsPosix,
                         testing::ValuesIn(kFactories),
                         [](const auto& row) { return std::string(row.param.title); });

}  // namespace
}  // namespace quiver_test
