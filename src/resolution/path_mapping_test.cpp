// Tests of path_mapping.h: the set as callers hold it.

#include "resolution/path_mapping.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "resolution/path_mapping_fixture.h"

namespace QV_2_9 {
namespace {

// --- the set

TEST_F(PathMappingsTest, BeginsEmpty) {
  EXPECT_EQ(mappings->getMappingCount(), 0);
  EXPECT_FALSE(mappings->getMapping(0));
  EXPECT_FALSE(mappings->getMapping(-1));
}

TEST_F(PathMappingsTest, RefusesWhatIsNoMapping) {
  EXPECT_FALSE(mappings->addMapping(nullptr, L"/h"));
  EXPECT_FALSE(mappings->addMapping(L"/ci", nullptr));
  EXPECT_FALSE(mappings->addMapping(L"/ci", L""));
  EXPECT_FALSE(mappings->learn(L"/ci/a.cpp", L"/h/b.cpp"));
  EXPECT_FALSE(mappings->learn(L"/ci/a.cpp", L"/ci/a.cpp"));
  EXPECT_FALSE(mappings->learn(nullptr, L"/h/b.cpp"));
  EXPECT_FALSE(mappings->learn(L"/ci/a.cpp", nullptr));
  EXPECT_FALSE(mappings->useInDefaultCallbacks(nullptr, L"key"));
  EXPECT_EQ(rows(), Rows());
}

TEST_F(PathMappingsTest, ReplacesByHandWhatWasSetByHand) {
  EXPECT_TRUE(mappings->addMapping(L"C:\\ci", L"/one"));
  EXPECT_TRUE(mappings->addMapping(L"D:\\ci", L"/two"));
  EXPECT_TRUE(mappings->addMapping(L"c:/CI/", L"/three"));
  ASSERT_EQ(mappings->getMappingCount(), 2);
  EXPECT_STREQ(mappings->getMapping(0)->getRecordedPrefix(), L"c:\\CI");
  EXPECT_STREQ(mappings->getMapping(1)->getRecordedPrefix(), L"D:\\ci");
}

TEST_F(PathMappingsTest, LearnsBehindWhatWasSetByHandTheNewestFirst) {
  const std::wstring file = tree.path("src/a.cpp");
  EXPECT_TRUE(mappings->learn(L"/one/src/a.cpp", file.c_str()));
  EXPECT_TRUE(mappings->learn(L"/two/src/a.cpp", file.c_str()));
  EXPECT_TRUE(mappings->learn(L"/one/src/a.cpp", file.c_str())) << "known already";
  EXPECT_TRUE(mappings->addMapping(L"/hand", tree.root().c_str()));
  EXPECT_EQ(rows(),
            (Rows{L"!/hand>" + tree.root() + L"*0",
                  L"/two>" + tree.root() + L"*0",
                  L"/one>" + tree.root() + L"*0"}));
  mappings->clearMappings();
  EXPECT_EQ(rows(), Rows());
}

TEST_F(PathMappingsTest, LearnsNothingThatIsCoveredAlready) {
  mappings->addMapping(L"/ci", tree.root().c_str());
  EXPECT_TRUE(mappings->learn(L"/ci/src/a.cpp", tree.path("src/a.cpp").c_str()));
  EXPECT_EQ(mappings->getMappingCount(), 1);
}

TEST_F(PathMappingsTest, ForgetsTheOldestOfTooManyLearned) {
  mappings->addMapping(L"/hand", L"/h");
  const auto most = static_cast<std::int32_t>(internal::PathMappingTable::kMostLearned);
  for (std::int32_t i = 0; i <= most; ++i)
    mappings->learn((L"/ci" + std::to_wstring(i) + L"/a.cpp").c_str(), L"/h/a.cpp");
  ASSERT_EQ(mappings->getMappingCount(), most + 1);
  EXPECT_STREQ(mappings->getMapping(0)->getRecordedPrefix(), L"/hand");
  EXPECT_STREQ(mappings->getMapping(most)->getRecordedPrefix(), L"/ci1");
}

TEST_F(PathMappingsTest, MappingsSurviveTheirSet) {
  mappings->addMapping(L"/ci", L"/h");
  const ObjectPtr<IPathMapping> mapping = mappings->getMapping(0);
  mappings = nullptr;
  EXPECT_STREQ(mapping->getRecordedPrefix(), L"/ci");
}

// --- lifetime and threads

TEST_F(PathMappingsTest, CallbacksLeaveTheirHoldersWithTheSet) {
  install();
  EXPECT_EQ(installed(), 3);
  mappings = nullptr;
  EXPECT_EQ(installed(), 0);
}

TEST_F(PathMappingsTest, SearchesOnSeveralThreadsShareOneSet) {
  install();
  const std::wstring file = tree.addFile("co/src/a.cpp", "new");
  mappings->addMapping(L"/ci", tree.path("co").c_str());
  std::vector<ObjectPtr<IFileSearch>> searches;
  for (int i = 0; i < 3; ++i)
    searches.push_back(manager->createFileSearch(context.get(), L"key", nullptr));
  std::vector<std::thread> threads;
  std::array<IsNew, 3> checks;  // Checks are made by one thread at a time.
  for (std::size_t thread = 0; thread < checks.size(); ++thread) {
    threads.emplace_back([&, one = searches[thread].get(), check = &checks[thread]] {
      for (int i = 0; i < 50; ++i) {
        EXPECT_TRUE(one->findSrcFile(L"/ci/src/a.cpp", L"", L"", check, nullptr));
        mappings->learn((L"/x" + std::to_wstring(i) + L"/src/a.cpp").c_str(), file.c_str());
        mappings->getMapping(1);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(mappings->getMapping(0)->getConfirmationCount(), 150);
}

}  // namespace
}  // namespace QV_2_9
