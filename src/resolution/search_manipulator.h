// The search manipulator: the default callbacks of one context, by key. No lock: settings are made
// between searches.

#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "quiver/ref_count.h"
#include "quiver/search_manipulator.h"
#include "resolution/default_callbacks.h"

namespace QV_2_9 {

class SearchManipulator final : public RefCountImpl<ISearchManipulator> {
 public:
  /// `context` may be null.
  SearchManipulator(const ObjectPtr<IResolutionContext>& context,
                    const ObjectPtr<IEditableSearchDirContainer>& searchDirs,
                    const ObjectPtr<ISearchHistory>& history);

  ObjectPtr<IEditableSearchDirContainer> getSearchDirContainer() override { return m_searchDirs; }
  ObjectPtr<ISearchHistory> getSearchHistory() override { return m_history; }
  bool setSearchStartedMode(const wchar_t* key, std::int32_t mode) override;
  bool setSearchStartedUserCallback(const wchar_t* key, ISearchStartedCallback* callback) override;
  bool setFilesFoundMode(const wchar_t* key, std::int32_t mode) override;
  bool setFilesFoundUserCallback(const wchar_t* key, IFilesFoundCallback* callback) override;
  bool setNoFilesFoundMode(const wchar_t* key, std::int32_t mode) override;
  bool setNoFilesFoundUserCallback(const wchar_t* key, INoFilesFoundCallback* callback) override;

 private:
  template <class Default>
  using CallbackMap = std::map<std::wstring, ObjectPtr<Default>>;

  /// Returns the default callback for `key`, made when there is none.
  template <class Default>
  Default& callbackFor(CallbackMap<Default>& callbacks, const wchar_t* key);
  template <class Default>
  bool setMode(CallbackMap<Default>& callbacks, const wchar_t* key, std::int32_t mode);
  template <class Default, class Callback>
  bool setUserCallback(CallbackMap<Default>& callbacks, const wchar_t* key, Callback* callback);

  ObjectPtr<IEditableSearchDirContainer> m_searchDirs;
  ObjectPtr<ISearchHistory> m_history;
  CallbackMap<DefaultSearchStartedCallback> m_searchStartedCallbacks;
  CallbackMap<DefaultFilesFoundCallback> m_filesFoundCallbacks;
  CallbackMap<DefaultNoFilesFoundCallback> m_noFilesFoundCallbacks;
  ObjectPtr<IResolutionContextMgr> m_resolutionContextMgr;
  ObjectPtr<IResolutionContext> m_context;
};

}  // namespace QV_2_9
