// What a search is configured with. Has no lock: see the interface.

#pragma once

#include "quiver/ref_count.h"
#include "quiver/search_env.h"

namespace QV_2_9 {

class EditableSearchEnv final : public RefCountImpl<IEditableSearchEnv> {
 public:
  ObjectPtr<ISearchDirIterator> getSearchDirs(search_category_t category) override;
  ObjectPtr<ISearchDirIterator> getArchiveSearchDirs(search_category_t category) override;
  CallbackHolder<ISearchStartedCallback>& getSearchStartedCallback() override;
  CallbackHolder<IFilesFoundCallback>& getFilesFoundCallback() override;
  CallbackHolder<INoFilesFoundCallback>& getNoFilesFoundCallback() override;
  CallbackHolder<IConfidenceLevelPolicyCallback>& getConfidenceLevelPolicyCallback() override;
  ObjectPtr<IEnvironmentInfo> getEnvironmentInfo() override;

  void setSearchDirs(const ObjectPtr<ISearchDirContainer>& dirs) override;
  void setArchiveSearchDirs(const ObjectPtr<ISearchDirContainer>& dirs) override;
  void setSearchStartedCallback(const CallbackHolder<ISearchStartedCallback>& callback) override;
  void setFilesFoundCallback(const CallbackHolder<IFilesFoundCallback>& callback) override;
  void setNoFilesFoundCallback(const CallbackHolder<INoFilesFoundCallback>& callback) override;
  void setConfidenceLevelPolicyCallback(
      const CallbackHolder<IConfidenceLevelPolicyCallback>& callback) override;
  void setEnvironmentInfo(const ObjectPtr<IEnvironmentInfo>& info) override;

 private:
  // The parts go in reverse order: the information, the holders, the containers.
  ObjectPtr<ISearchDirContainer> m_searchDirs;
  ObjectPtr<ISearchDirContainer> m_archiveSearchDirs;
  CallbackHolder<ISearchStartedCallback> m_searchStartedCallback;
  CallbackHolder<IFilesFoundCallback> m_filesFoundCallback;
  CallbackHolder<INoFilesFoundCallback> m_noFilesFoundCallback;
  CallbackHolder<IConfidenceLevelPolicyCallback> m_confidenceLevelPolicyCallback;
  ObjectPtr<IEnvironmentInfo> m_environmentInfo;
};

}  // namespace QV_2_9
