// See search_manipulator.h.

#include "resolution/search_manipulator.h"

namespace QV_2_9 {

// Arguments by value are what callers were compiled with.
// NOLINTBEGIN(performance-unnecessary-value-param)
ObjectPtr<ISearchManipulator> createSearchManipulatorByContext(
    ObjectPtr<IResolutionContext> context,
    ObjectPtr<IEditableSearchDirContainer> searchDirs,
    ObjectPtr<ISearchHistory> history) {
  return new SearchManipulator(context, searchDirs, history);
}
// NOLINTEND(performance-unnecessary-value-param)

SearchManipulator::SearchManipulator(const ObjectPtr<IResolutionContext>& context,
                                     const ObjectPtr<IEditableSearchDirContainer>& searchDirs,
                                     const ObjectPtr<ISearchHistory>& history)
    : m_searchDirs(searchDirs ? searchDirs : IEditableSearchDirContainer::create()),
      m_history(history ? history : ISearchHistory::create()),
      m_resolutionContextMgr(IResolutionContextMgr::create()),
      m_context(context) {}

bool SearchManipulator::setSearchStartedMode(const wchar_t* key, std::int32_t mode) {
  return setMode(m_searchStartedCallbacks, key, mode);
}

bool SearchManipulator::setSearchStartedUserCallback(const wchar_t* key,
                                                     ISearchStartedCallback* callback) {
  return setUserCallback(m_searchStartedCallbacks, key, callback);
}

bool SearchManipulator::setFilesFoundMode(const wchar_t* key, std::int32_t mode) {
  return setMode(m_filesFoundCallbacks, key, mode);
}

bool SearchManipulator::setFilesFoundUserCallback(const wchar_t* key,
                                                  IFilesFoundCallback* callback) {
  return setUserCallback(m_filesFoundCallbacks, key, callback);
}

bool SearchManipulator::setNoFilesFoundMode(const wchar_t* key, std::int32_t mode) {
  return setMode(m_noFilesFoundCallbacks, key, mode);
}

bool SearchManipulator::setNoFilesFoundUserCallback(const wchar_t* key,
                                                    INoFilesFoundCallback* callback) {
  return setUserCallback(m_noFilesFoundCallbacks, key, callback);
}

template <class Default>
Default& SearchManipulator::callbackFor(CallbackMap<Default>& callbacks, const wchar_t* key) {
  const auto entry = callbacks.find(key);
  if (entry != callbacks.end())
    return *entry->second;
  const ObjectPtr<Default> created(new Default(m_history, m_context, key));
  callbacks.emplace(key, created);
  return *created;
}

template <class Default>
bool SearchManipulator::setMode(CallbackMap<Default>& callbacks,
                                const wchar_t* key,
                                std::int32_t mode) {
  if (!key)
    return false;
  callbackFor(callbacks, key).setHistoryMode(mode);
  return true;
}

template <class Default, class Callback>
bool SearchManipulator::setUserCallback(CallbackMap<Default>& callbacks,
                                        const wchar_t* key,
                                        Callback* callback) {
  if (!key)
    return false;
  callbackFor(callbacks, key).setUserCallback(callback);
  return true;
}

}  // namespace QV_2_9
