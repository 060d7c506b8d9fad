// What a search is configured with.

#include "config/search_env.h"

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "quiver/ref_count.h"
#include "support/callbacks.h"
#include "support/directories.h"

namespace QV_2_9 {
namespace {

using quiver_test::directoriesOf;
using Dirs = std::vector<std::wstring>;

const Dirs kNone = {quiver_test::kNoIterator};

class SearchEnv : public testing::Test {
 protected:
  ObjectPtr<IEditableSearchEnv> m_env = IEditableSearchEnv::create();
};

TEST_F(SearchEnv, BeginsWithEveryPartEmpty) {
  for (const auto category : {scBinaryFiles, scSymbolFiles, scSourceFiles, scAllFiles}) {
    EXPECT_EQ(directoriesOf(m_env->getSearchDirs(category)), kNone);
    EXPECT_EQ(directoriesOf(m_env->getArchiveSearchDirs(category)), kNone);
  }
  EXPECT_EQ(m_env->getSearchStartedCallback().getCallback(), nullptr);
  EXPECT_EQ(m_env->getFilesFoundCallback().getCallback(), nullptr);
  EXPECT_EQ(m_env->getNoFilesFoundCallback().getCallback(), nullptr);
  EXPECT_EQ(m_env->getConfidenceLevelPolicyCallback().getCallback(), nullptr);
  EXPECT_FALSE(m_env->getEnvironmentInfo());
  EXPECT_EQ(m_env->getVersion(), 1);
}

TEST_F(SearchEnv, HoldsTheContainerAndNotACopy) {
  const ObjectPtr<IEditableSearchDirContainer> dirs = IEditableSearchDirContainer::create();
  m_env->setSearchDirs(dirs);
  dirs->addSearchDir(scBinaryFiles, L"/late", true, false);
  EXPECT_EQ(directoriesOf(m_env->getSearchDirs(scBinaryFiles)), (Dirs{L"/late +r"}));
  EXPECT_EQ(directoriesOf(m_env->getArchiveSearchDirs(scBinaryFiles)), kNone);
}

TEST_F(SearchEnv, KeepsSearchAndArchiveDirectoriesApart) {
  const ObjectPtr<IEditableSearchDirContainer> dirs = IEditableSearchDirContainer::create();
  dirs->addSearchDir(scBinaryFiles, L"/dirs", false, false);
  const ObjectPtr<IEditableSearchDirContainer> archive = IEditableSearchDirContainer::create();
  archive->addSearchDir(scBinaryFiles, L"/archive", false, false);
  m_env->setSearchDirs(dirs);
  m_env->setArchiveSearchDirs(archive);
  EXPECT_EQ(directoriesOf(m_env->getSearchDirs(scBinaryFiles)), (Dirs{L"/dirs"}));
  EXPECT_EQ(directoriesOf(m_env->getArchiveSearchDirs(scBinaryFiles)), (Dirs{L"/archive"}));
}

TEST_F(SearchEnv, TakesOneContainerInBothPlaces) {
  const ObjectPtr<IEditableSearchDirContainer> dirs = IEditableSearchDirContainer::create();
  dirs->addSearchDir(scSymbolFiles, L"/both", false, false);
  m_env->setSearchDirs(dirs);
  m_env->setArchiveSearchDirs(dirs);
  EXPECT_EQ(directoriesOf(m_env->getSearchDirs(scSymbolFiles)), (Dirs{L"/both"}));
  EXPECT_EQ(directoriesOf(m_env->getArchiveSearchDirs(scSymbolFiles)), (Dirs{L"/both"}));
}

TEST_F(SearchEnv, DoesNotMergeCategories) {
  const ObjectPtr<IEditableSearchDirContainer> dirs = IEditableSearchDirContainer::create();
  dirs->addSearchDir(scAllFiles, L"/all", false, false);
  m_env->setSearchDirs(dirs);
  EXPECT_EQ(directoriesOf(m_env->getSearchDirs(scBinaryFiles)), kNone);
  EXPECT_EQ(directoriesOf(m_env->getSearchDirs(scAllFiles)), (Dirs{L"/all"}));
}

TEST_F(SearchEnv, LetsAContainerBeTakenOutAgain) {
  const ObjectPtr<IEditableSearchDirContainer> dirs = IEditableSearchDirContainer::create();
  m_env->setSearchDirs(dirs);
  m_env->setArchiveSearchDirs(dirs);
  m_env->setSearchDirs({});
  m_env->setArchiveSearchDirs({});
  EXPECT_EQ(dirs->addRef(), 2u);
  dirs->release();
}

TEST_F(SearchEnv, HandsOutTheEnvironmentInformation) {
  const ObjectPtr<IEditableEnvironmentInfo> info = IEditableEnvironmentInfo::create();
  m_env->setEnvironmentInfo(info);
  EXPECT_EQ(m_env->getEnvironmentInfo().get(), info.get());
  info->setOSType(2);
  EXPECT_EQ(m_env->getEnvironmentInfo()->getOSType(), 2);
  m_env->setEnvironmentInfo({});
  EXPECT_FALSE(m_env->getEnvironmentInfo());
}

// One row per callback of the environment.
template <class CallbackType,
          class Interface,
          CallbackHolder<Interface>& (ISearchEnv::*getCallback)(),
          void (IEditableSearchEnv::*setCallback)(const CallbackHolder<Interface>&)>
struct Slot {
  using Callback = CallbackType;
  static CallbackHolder<Interface>& holder(IEditableSearchEnv& env) { return (env.*getCallback)(); }
  static void set(IEditableSearchEnv& env, Interface* callback) { (env.*setCallback)(callback); }
};

using Slots = testing::Types<Slot<quiver_test::RecordingSearchStarted,
                                  ISearchStartedCallback,
                                  &ISearchEnv::getSearchStartedCallback,
                                  &IEditableSearchEnv::setSearchStartedCallback>,
                             Slot<quiver_test::RecordingFilesFound,
                                  IFilesFoundCallback,
                                  &ISearchEnv::getFilesFoundCallback,
                                  &IEditableSearchEnv::setFilesFoundCallback>,
                             Slot<quiver_test::RecordingNoFilesFound,
                                  INoFilesFoundCallback,
                                  &ISearchEnv::getNoFilesFoundCallback,
                                  &IEditableSearchEnv::setNoFilesFoundCallback>,
                             Slot<quiver_test::RecordingConfidenceLevelPolicy,
                                  IConfidenceLevelPolicyCallback,
                                  &ISearchEnv::getConfidenceLevelPolicyCallback,
                                  &IEditableSearchEnv::setConfidenceLevelPolicyCallback>>;

template <class S>
class SearchEnvCallback : public testing::Test {
 protected:
  ObjectPtr<IEditableSearchEnv> m_env = IEditableSearchEnv::create();
};

TYPED_TEST_SUITE(SearchEnvCallback, Slots);

TYPED_TEST(SearchEnvCallback, IsReadThroughTheEnvironmentsOwnHolder) {
  typename TypeParam::Callback callback;
  TypeParam::set(*this->m_env, &callback);
  EXPECT_EQ(TypeParam::holder(*this->m_env).getCallback(), &callback);
  EXPECT_EQ(TypeParam::holder(*this->m_env).getLock(), callback.getLock());
  EXPECT_EQ(&TypeParam::holder(*this->m_env), &TypeParam::holder(*this->m_env));
}

TYPED_TEST(SearchEnvCallback, IsForgottenWhenTheCallbackIsDestroyed) {
  {
    typename TypeParam::Callback callback;
    TypeParam::set(*this->m_env, &callback);
  }
  EXPECT_EQ(TypeParam::holder(*this->m_env).getCallback(), nullptr);
  this->m_env = ObjectPtr<IEditableSearchEnv>();  // touches no callback any more
}

TYPED_TEST(SearchEnvCallback, MayOutliveTheEnvironment) {
  typename TypeParam::Callback callback;
  TypeParam::set(*this->m_env, &callback);
  this->m_env = ObjectPtr<IEditableSearchEnv>();
  EXPECT_NO_FATAL_FAILURE(callback.disconnectHandlers());
}

TYPED_TEST(SearchEnvCallback, IsReplacedAndTakenOut) {
  typename TypeParam::Callback first;
  typename TypeParam::Callback second;
  TypeParam::set(*this->m_env, &first);
  TypeParam::set(*this->m_env, &second);
  first.disconnectHandlers();
  EXPECT_EQ(TypeParam::holder(*this->m_env).getCallback(), &second);
  TypeParam::set(*this->m_env, nullptr);
  EXPECT_EQ(TypeParam::holder(*this->m_env).getCallback(), nullptr);
}

TYPED_TEST(SearchEnvCallback, IsRegisteredAnewWhenSetAgain) {
  class Probe final : public IEventHandler {
   public:
    explicit Probe(IEditableSearchEnv& env) : m_env(env) {}
    void onGeneratorChanged(EventGenerator*) override {
      callbackWasStillSet = TypeParam::holder(m_env).getCallback() != nullptr;
    }
    bool callbackWasStillSet = false;

   private:
    IEditableSearchEnv& m_env;
  } probe(*this->m_env);
  typename TypeParam::Callback callback;
  TypeParam::set(*this->m_env, &callback);
  callback.addHandler(&probe);
  TypeParam::set(*this->m_env, &callback);
  callback.disconnectHandlers();
  EXPECT_TRUE(probe.callbackWasStillSet);  // the environment's holder stands behind the probe
  EXPECT_EQ(TypeParam::holder(*this->m_env).getCallback(), nullptr);
}

// Tells when it dies.
template <class Interface>
class Mortal : public RefCountImpl<Interface> {
 public:
  Mortal(std::string name, std::vector<std::string>& log) : m_name(std::move(name)), m_log(log) {}
  ~Mortal() override { m_log.push_back(m_name); }

 private:
  std::string m_name;
  std::vector<std::string>& m_log;
};

class MortalDirs final : public Mortal<ISearchDirContainer> {
 public:
  using Mortal::Mortal;
  ObjectPtr<ISearchDirIterator> createIterator(search_category_t) override { return {}; }
};

class MortalInfo final : public Mortal<IEnvironmentInfo> {
 public:
  using Mortal::Mortal;
  std::int32_t getOSType() override { return 0; }
  std::int32_t getExtraInfo() override { return 0; }
};

TEST_F(SearchEnv, DropsItsPartsInReverseOrder) {
  std::vector<std::string> log;
  m_env->setSearchDirs(new MortalDirs("dirs", log));
  m_env->setArchiveSearchDirs(new MortalDirs("archive", log));
  m_env->setEnvironmentInfo(new MortalInfo("info", log));
  m_env = ObjectPtr<IEditableSearchEnv>();
  EXPECT_EQ(log, (std::vector<std::string>{"info", "archive", "dirs"}));
}

}  // namespace
}  // namespace QV_2_9
