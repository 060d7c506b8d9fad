// What a search is configured with.

#include "config/search_env.h"

namespace QV_2_9 {
namespace {

ObjectPtr<ISearchDirIterator> directoriesOf(const ObjectPtr<ISearchDirContainer>& container,
                                            search_category_t category) {
  if (!container)
    return {};
  return container->createIterator(category);
}

}  // namespace

ObjectPtr<ISearchDirIterator> EditableSearchEnv::getSearchDirs(search_category_t category) {
  return directoriesOf(m_searchDirs, category);
}

ObjectPtr<ISearchDirIterator> EditableSearchEnv::getArchiveSearchDirs(search_category_t category) {
  return directoriesOf(m_archiveSearchDirs, category);
}

CallbackHolder<ISearchStartedCallback>& EditableSearchEnv::getSearchStartedCallback() {
  return m_searchStartedCallback;
}

CallbackHolder<IFilesFoundCallback>& EditableSearchEnv::getFilesFoundCallback() {
  return m_filesFoundCallback;
}

CallbackHolder<INoFilesFoundCallback>& EditableSearchEnv::getNoFilesFoundCallback() {
  return m_noFilesFoundCallback;
}

CallbackHolder<IConfidenceLevelPolicyCallback>&
EditableSearchEnv::getConfidenceLevelPolicyCallback() {
  return m_confidenceLevelPolicyCallback;
}

ObjectPtr<IEnvironmentInfo> EditableSearchEnv::getEnvironmentInfo() {
  return m_environmentInfo;
}

void EditableSearchEnv::setSearchDirs(const ObjectPtr<ISearchDirContainer>& dirs) {
  m_searchDirs = dirs;
}

void EditableSearchEnv::setArchiveSearchDirs(const ObjectPtr<ISearchDirContainer>& dirs) {
  m_archiveSearchDirs = dirs;
}

void EditableSearchEnv::setSearchStartedCallback(
    const CallbackHolder<ISearchStartedCallback>& callback) {
  m_searchStartedCallback = callback;
}

void EditableSearchEnv::setFilesFoundCallback(const CallbackHolder<IFilesFoundCallback>& callback) {
  m_filesFoundCallback = callback;
}

void EditableSearchEnv::setNoFilesFoundCallback(
    const CallbackHolder<INoFilesFoundCallback>& callback) {
  m_noFilesFoundCallback = callback;
}

void EditableSearchEnv::setConfidenceLevelPolicyCallback(
    const CallbackHolder<IConfidenceLevelPolicyCallback>& callback) {
  m_confidenceLevelPolicyCallback = callback;
}

void EditableSearchEnv::setEnvironmentInfo(const ObjectPtr<IEnvironmentInfo>& info) {
  m_environmentInfo = info;
}

ObjectPtr<IEditableSearchEnv> IEditableSearchEnv::create() {
  return new EditableSearchEnv;
}

}  // namespace QV_2_9
