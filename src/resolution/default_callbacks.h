// The callbacks that a search manipulator puts around the user's: they suggest what the history
// remembers when a search starts, and record what came of it.
//
// Each registers itself with the context manager as the last step of its construction and
// unregisters first thing in its destruction. The manager refers to it weakly; the manipulator's
// map holds the reference. No lock of their own: searches call them under the lock of their class.

#pragma once

#include <cstdint>
#include <new>
#include <string>

#include "quiver/ref_count.h"
#include "quiver/resolution_context.h"
#include "quiver/search_callbacks.h"
#include "quiver/search_history.h"
#include "quiver/search_manipulator.h"
#include "resolution/callbacks_by_category.h"

namespace QV_2_9 {

namespace internal {

/// What the default callbacks of the three kinds share. `kSetter` is the manager's operation that
/// files a Callback.
template <class Callback, auto kSetter>
class DefaultCallback : public Callback, public RefCountImpl<IQVObject> {
 public:
  void setUserCallback(Callback* callback) { m_userCallback = callback; }
  void setHistoryMode(std::int32_t mode) { m_historyMode = mode; }

 protected:
  DefaultCallback(const ObjectPtr<ISearchHistory>& history,
                  const ObjectPtr<IResolutionContext>& context,
                  const wchar_t* key)
      : m_history(history),
        m_resolutionContextMgr(IResolutionContextMgr::create()),
        m_context(context),
        m_key(key ? key : L"") {}
  ~DefaultCallback() override = default;

  void registerSelf() { file(this); }
  /// Intended: empties the entry also when somebody else's callback is in it by now.
  void unregisterSelf() {
    try {
      file(nullptr);
    } catch (const std::bad_alloc&) {
      // The entry empties itself when the generator base goes.
    }
  }

  ObjectPtr<ISearchHistory> m_history;
  Callback* m_userCallback = nullptr;
  std::int32_t m_historyMode = hmDisabled;

 private:
  void file(Callback* callback) {
    (*m_resolutionContextMgr.*kSetter)(m_context.get(), m_key.c_str(), callback);
  }

  ObjectPtr<IResolutionContextMgr> m_resolutionContextMgr;
  ObjectPtr<IResolutionContext> m_context;
  std::wstring m_key;
};

}  // namespace internal

/// Suggests the remembered path. Cancels the steps when the file is to stay unresolved, and in
/// authoritative mode.
class DefaultSearchStartedCallback final
    : public internal::SearchStartedByCategory<
          DefaultSearchStartedCallback,
          internal::DefaultCallback<ISearchStartedCallback,
                                    &IResolutionContextMgr::setSearchStartedCallback>> {
 public:
  DefaultSearchStartedCallback(const ObjectPtr<ISearchHistory>& history,
                               const ObjectPtr<IResolutionContext>& context,
                               const wchar_t* key);
  ~DefaultSearchStartedCallback() override;

  template <class Ops>
  bool searchStarted(const internal::SoughtFile& file, IStringContainer& suggestions);
};

/// Records the user's choice, or takes and records the next file.
class DefaultFilesFoundCallback final
    : public internal::FilesFoundByCategory<
          DefaultFilesFoundCallback,
          internal::DefaultCallback<IFilesFoundCallback,
                                    &IResolutionContextMgr::setFilesFoundCallback>> {
 public:
  DefaultFilesFoundCallback(const ObjectPtr<ISearchHistory>& history,
                            const ObjectPtr<IResolutionContext>& context,
                            const wchar_t* key);
  ~DefaultFilesFoundCallback() override;

  template <class Ops>
  ObjectPtr<IValidFile> filesFound(const internal::SoughtFile& file, IValidFileIterator& files);
};

/// Records the user's choice, or that there is none, in authoritative mode.
class DefaultNoFilesFoundCallback final
    : public internal::NoFilesFoundByCategory<
          DefaultNoFilesFoundCallback,
          internal::DefaultCallback<INoFilesFoundCallback,
                                    &IResolutionContextMgr::setNoFilesFoundCallback>> {
 public:
  DefaultNoFilesFoundCallback(const ObjectPtr<ISearchHistory>& history,
                              const ObjectPtr<IResolutionContext>& context,
                              const wchar_t* key);
  ~DefaultNoFilesFoundCallback() override;

  template <class Ops>
  ObjectPtr<IValidFile> noFilesFound(const internal::SoughtFile& file,
                                     const internal::SearchOutcome& outcome);
};

}  // namespace QV_2_9
