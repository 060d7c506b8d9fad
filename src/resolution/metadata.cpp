// See metadata.h.

#include "resolution/metadata.h"

namespace QV_2_9 {

ObjectPtr<ISearchDirContainer> Metadata::getSearchDirs(const wchar_t* key) {
  const auto entry = m_searchDirs.find(key);
  return entry == m_searchDirs.end() ? nullptr : entry->second;
}

void Metadata::setSearchDirs(const ObjectPtr<ISearchDirContainer>& dirs, const wchar_t* key) {
  m_searchDirs[key] = dirs;
}

ObjectPtr<ISearchDirKeyIterator> Metadata::getSearchDirKeys() {
  return new SearchDirKeyIterator(m_searchDirs);
}

void Metadata::setSearchStartedCallback(const std::wstring& key, ISearchStartedCallback* callback) {
  setCallback(key, &CallbackSet::searchStarted, callback);
}

void Metadata::setFilesFoundCallback(const std::wstring& key, IFilesFoundCallback* callback) {
  setCallback(key, &CallbackSet::filesFound, callback);
}

void Metadata::setNoFilesFoundCallback(const std::wstring& key, INoFilesFoundCallback* callback) {
  setCallback(key, &CallbackSet::noFilesFound, callback);
}

void Metadata::setConfidenceLevelPolicyCallback(const std::wstring& key,
                                                IConfidenceLevelPolicyCallback* callback) {
  setCallback(key, &CallbackSet::confidenceLevelPolicy, callback);
}

// Intended: the whole set is stored anew, so that all four holders register again, behind the other
// handlers of their callbacks. What may fail changes no callback, but for the last step.
template <class T>
void Metadata::setCallback(const std::wstring& key,
                           CallbackHolder<T> CallbackSet::*kind,
                           T* callback) {
  CallbackSet& stored = m_callbacks[key];
  stored = CallbackSet(stored);
  stored.*kind = CallbackHolder<T>(callback);
}

CallbackSet Metadata::getCallbacks(const std::wstring& key) {
  const auto entry = m_callbacks.find(key);
  return entry == m_callbacks.end() ? CallbackSet() : entry->second;
}

void Metadata::setArchiveDir(const wchar_t* dir) {
  if (dir)
    m_archiveDir = dir;
}

std::wstring Metadata::getArchiveDir() {
  return m_archiveDir;
}

bool SearchDirKeyIterator::next() {
  if (m_position == m_searchDirs->end())
    return false;
  return ++m_position != m_searchDirs->end();
}

bool SearchDirKeyIterator::get(const wchar_t** key, ObjectPtr<ISearchDirContainer>& dirs) {
  if (m_position == m_searchDirs->end())
    return false;
  *key = m_position->first.c_str();
  dirs = m_position->second;
  return true;
}

}  // namespace QV_2_9
