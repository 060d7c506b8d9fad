// Tests of metadata.h.

#include "resolution/metadata.h"

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/callbacks.h"

namespace QV_2_9 {
namespace {

using quiver_test::RecordingConfidenceLevelPolicy;
using quiver_test::RecordingFilesFound;
using quiver_test::RecordingNoFilesFound;
using quiver_test::RecordingSearchStarted;

ObjectPtr<IMetadata> newMetadata() {
  return new Metadata;
}

ObjectPtr<ISearchDirContainer> newContainer() {
  return IEditableSearchDirContainer::create();
}

std::vector<std::wstring> keysOf(IMetadata& metadata) {
  std::vector<std::wstring> keys;
  const ObjectPtr<ISearchDirKeyIterator> entries = metadata.getSearchDirKeys();
  const wchar_t* key = nullptr;
  for (ObjectPtr<ISearchDirContainer> dirs; entries->get(&key, dirs); entries->next())
    keys.push_back(key);
  return keys;
}

bool isEmpty(const CallbackSet& set) {
  return !set.searchStarted.getCallback() && !set.filesFound.getCallback() &&
         !set.noFilesFound.getCallback() && !set.confidenceLevelPolicy.getCallback();
}

TEST(Metadata, StartsEmpty) {
  const ObjectPtr<IMetadata> metadata = newMetadata();
  EXPECT_EQ(metadata->getVersion(), 1);
  EXPECT_FALSE(metadata->getSearchDirs(L"key"));
  EXPECT_TRUE(isEmpty(metadata->getCallbacks(L"key")));
  EXPECT_EQ(metadata->getArchiveDir(), L"");
  EXPECT_TRUE(keysOf(*metadata).empty());
}

TEST(Metadata, LookingUpCreatesNoEntry) {
  const ObjectPtr<IMetadata> metadata = newMetadata();
  EXPECT_FALSE(metadata->getSearchDirs(L"key"));
  EXPECT_TRUE(keysOf(*metadata).empty());
}

TEST(Metadata, WalksKeysInAscendingOrder) {
  const ObjectPtr<IMetadata> metadata = newMetadata();
  for (const wchar_t* key : {L"sources", L"a", L"", L"Sources", L" hidden_result_dir_key", L"ab"})
    metadata->setSearchDirs(newContainer(), key);
  const std::vector<std::wstring> expected = {
      L"", L" hidden_result_dir_key", L"Sources", L"a", L"ab", L"sources"};
  EXPECT_EQ(keysOf(*metadata), expected);
}

TEST(Metadata, KeysThatDifferInCaseAreTwoEntries) {
  const ObjectPtr<IMetadata> metadata = newMetadata();
  const ObjectPtr<ISearchDirContainer> upper = newContainer();
  const ObjectPtr<ISearchDirContainer> lower = newContainer();
  metadata->setSearchDirs(upper, L"Sources");
  metadata->setSearchDirs(lower, L"sources");
  EXPECT_EQ(metadata->getSearchDirs(L"Sources").get(), upper.get());
  EXPECT_EQ(metadata->getSearchDirs(L"sources").get(), lower.get());
}

TEST(Metadata, LaterContainerReplacesEarlierOne) {
  const ObjectPtr<IMetadata> metadata = newMetadata();
  const ObjectPtr<ISearchDirContainer> first = newContainer();
  const ObjectPtr<ISearchDirContainer> second = newContainer();
  metadata->setSearchDirs(first, L"key");
  metadata->setSearchDirs(second, L"key");
  EXPECT_EQ(metadata->getSearchDirs(L"key").get(), second.get());
  EXPECT_EQ(keysOf(*metadata).size(), 1u);
  EXPECT_EQ(first->addRef(), 2u) << "the earlier container must have been let go";
  first->release();
}

TEST(Metadata, KeepsNullContainers) {
  const ObjectPtr<IMetadata> metadata = newMetadata();
  metadata->setSearchDirs(nullptr, L"key");
  EXPECT_FALSE(metadata->getSearchDirs(L"key"));
  const wchar_t* key = nullptr;
  ObjectPtr<ISearchDirContainer> dirs = newContainer();
  ASSERT_TRUE(metadata->getSearchDirKeys()->get(&key, dirs));
  EXPECT_STREQ(key, L"key");
  EXPECT_FALSE(dirs);
}

TEST(Metadata, CopiesKeys) {
  const ObjectPtr<IMetadata> metadata = newMetadata();
  wchar_t key[] = L"key";
  metadata->setSearchDirs(newContainer(), key);
  key[0] = L'x';
  EXPECT_TRUE(metadata->getSearchDirs(L"key"));
}

TEST(SearchDirKeyIterator, EmptyMapHasNoEntry) {
  const ObjectPtr<IMetadata> metadata = newMetadata();
  const ObjectPtr<ISearchDirKeyIterator> entries = metadata->getSearchDirKeys();
  const wchar_t* const untouchedKey = L"untouched";
  const wchar_t* key = untouchedKey;
  const ObjectPtr<ISearchDirContainer> untouchedDirs = newContainer();
  ObjectPtr<ISearchDirContainer> dirs = untouchedDirs;
  EXPECT_FALSE(entries->get(&key, dirs));
  EXPECT_FALSE(entries->next());
  EXPECT_EQ(key, untouchedKey);
  EXPECT_EQ(dirs.get(), untouchedDirs.get());
}

TEST(SearchDirKeyIterator, StaysAtTheEnd) {
  const ObjectPtr<IMetadata> metadata = newMetadata();
  metadata->setSearchDirs(newContainer(), L"a");
  metadata->setSearchDirs(newContainer(), L"b");
  const ObjectPtr<ISearchDirKeyIterator> entries = metadata->getSearchDirKeys();
  const wchar_t* key = nullptr;
  ObjectPtr<ISearchDirContainer> dirs;
  EXPECT_TRUE(entries->next());
  EXPECT_TRUE(entries->get(&key, dirs));
  EXPECT_STREQ(key, L"b");
  EXPECT_FALSE(entries->next());
  EXPECT_FALSE(entries->next());
  EXPECT_FALSE(entries->get(&key, dirs));
  EXPECT_STREQ(key, L"b");
}

TEST(SearchDirKeyIterator, ShowsAContainerReplacedMeanwhile) {
  const ObjectPtr<IMetadata> metadata = newMetadata();
  metadata->setSearchDirs(newContainer(), L"key");
  const ObjectPtr<ISearchDirKeyIterator> entries = metadata->getSearchDirKeys();
  const ObjectPtr<ISearchDirContainer> second = newContainer();
  metadata->setSearchDirs(second, L"key");
  const wchar_t* key = nullptr;
  ObjectPtr<ISearchDirContainer> dirs;
  ASSERT_TRUE(entries->get(&key, dirs));
  EXPECT_EQ(dirs.get(), second.get());
}

TEST(Metadata, SettingOneKindKeepsTheOthers) {
  RecordingSearchStarted started;
  RecordingFilesFound found;
  RecordingNoFilesFound notFound;
  RecordingConfidenceLevelPolicy policy;
  const ObjectPtr<IMetadata> metadata = newMetadata();
  metadata->setFilesFoundCallback(L"key", &found);
  metadata->setSearchStartedCallback(L"key", &started);
  metadata->setConfidenceLevelPolicyCallback(L"key", &policy);
  metadata->setNoFilesFoundCallback(L"key", &notFound);
  metadata->setSearchStartedCallback(L"key", nullptr);
  const CallbackSet set = metadata->getCallbacks(L"key");
  EXPECT_EQ(set.searchStarted.getCallback(), nullptr);
  EXPECT_EQ(set.filesFound.getCallback(), &found);
  EXPECT_EQ(set.noFilesFound.getCallback(), &notFound);
  EXPECT_EQ(set.confidenceLevelPolicy.getCallback(), &policy);
}

TEST(Metadata, CallbacksStandUnderTheirOwnKey) {
  RecordingFilesFound found;
  const ObjectPtr<IMetadata> metadata = newMetadata();
  metadata->setFilesFoundCallback(L"key", &found);
  EXPECT_EQ(metadata->getCallbacks(L"key").filesFound.getCallback(), &found);
  EXPECT_TRUE(isEmpty(metadata->getCallbacks(L"Key")));
  EXPECT_TRUE(isEmpty(metadata->getCallbacks(L"")));
}

TEST(Metadata, DestroyedCallbackEmptiesEveryKey) {
  auto found = std::make_unique<RecordingFilesFound>();
  RecordingSearchStarted started;
  const ObjectPtr<IMetadata> metadata = newMetadata();
  metadata->setFilesFoundCallback(L"a", found.get());
  metadata->setFilesFoundCallback(L"b", found.get());
  metadata->setSearchStartedCallback(L"b", &started);
  found.reset();
  EXPECT_TRUE(isEmpty(metadata->getCallbacks(L"a")));
  EXPECT_EQ(metadata->getCallbacks(L"b").filesFound.getCallback(), nullptr);
  EXPECT_EQ(metadata->getCallbacks(L"b").searchStarted.getCallback(), &started);
}

TEST(Metadata, DestroyedMetadataLeavesItsCallbacks) {
  RecordingFilesFound found;
  ObjectPtr<IMetadata> metadata = newMetadata();
  metadata->setFilesFoundCallback(L"key", &found);
  metadata = nullptr;
  found.disconnectHandlers();  // would tell a dead holder
}

TEST(Metadata, ReturnedSetIsACopyThatEmptiesItself) {
  auto found = std::make_unique<RecordingFilesFound>();
  ObjectPtr<IMetadata> metadata = newMetadata();
  metadata->setFilesFoundCallback(L"key", found.get());
  const CallbackSet set = metadata->getCallbacks(L"key");
  metadata = nullptr;
  EXPECT_EQ(set.filesFound.getCallback(), found.get());
  found.reset();
  EXPECT_EQ(set.filesFound.getCallback(), nullptr);
}

/// Notes, when its callback disconnects, whether the metadata has forgotten it already.
class OrderProbe final : public IEventHandler {
 public:
  explicit OrderProbe(IMetadata& metadata) : m_metadata(metadata) {}

  void onGeneratorChanged(EventGenerator*) override {
    metadataToldBefore = !m_metadata.getCallbacks(L"key").filesFound.getCallback();
  }
  bool metadataToldBefore = false;

 private:
  IMetadata& m_metadata;
};

TEST(Metadata, SettingOneKindRegistersTheOthersAnew) {
  RecordingFilesFound found;
  RecordingSearchStarted started;
  const ObjectPtr<IMetadata> metadata = newMetadata();
  OrderProbe probe(*metadata);

  metadata->setFilesFoundCallback(L"key", &found);
  found.addHandler(&probe);
  found.disconnectHandlers();
  EXPECT_TRUE(probe.metadataToldBefore) << "handlers are told in the order they registered";

  metadata->setFilesFoundCallback(L"key", &found);
  found.addHandler(&probe);
  metadata->setSearchStartedCallback(L"key", &started);
  found.disconnectHandlers();
  EXPECT_FALSE(probe.metadataToldBefore);
}

TEST(Metadata, ArchiveDirIsReplacedButNotByNull) {
  const ObjectPtr<IMetadata> metadata = newMetadata();
  metadata->setArchiveDir(nullptr);
  EXPECT_EQ(metadata->getArchiveDir(), L"");
  metadata->setArchiveDir(L"/archive");
  metadata->setArchiveDir(nullptr);
  EXPECT_EQ(metadata->getArchiveDir(), L"/archive");
  metadata->setArchiveDir(L"/other");
  EXPECT_EQ(metadata->getArchiveDir(), L"/other");
  metadata->setArchiveDir(L"");
  EXPECT_EQ(metadata->getArchiveDir(), L"");
}

}  // namespace
}  // namespace QV_2_9
