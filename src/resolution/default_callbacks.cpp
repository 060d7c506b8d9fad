// See default_callbacks.h. Each kind runs one algorithm over a handler for the category.

#include "resolution/default_callbacks.h"

#include "quiver/search_results.h"
#include "quiver/string_container.h"
#include "quiver/validation.h"
#include "resolution/callback_handlers.h"

namespace QV_2_9 {

DefaultSearchStartedCallback::DefaultSearchStartedCallback(
    const ObjectPtr<ISearchHistory>& history,
    const ObjectPtr<IResolutionContext>& context,
    const wchar_t* key)
    : SearchStartedByCategory(history, context, key) {
  registerSelf();
}

DefaultSearchStartedCallback::~DefaultSearchStartedCallback() {
  unregisterSelf();
}

template <class Ops>
bool DefaultSearchStartedCallback::searchStarted(const internal::SoughtFile& file,
                                                 IStringContainer& suggestions) {
  SearchStartedHandler<Ops> handler(m_history, m_userCallback, file);
  const bool answer = handler.callUserCallback(suggestions);
  if (!answer || m_historyMode == hmDisabled)
    return answer;
  const ObjectPtr<IFileAssociation> association = handler.findAssociation();
  if (!association)
    return answer;
  const wchar_t* path = association->getPath();
  if (!path)
    return false;
  suggestions.add(path);
  return m_historyMode == hmAdvisory;
}

DefaultFilesFoundCallback::DefaultFilesFoundCallback(const ObjectPtr<ISearchHistory>& history,
                                                     const ObjectPtr<IResolutionContext>& context,
                                                     const wchar_t* key)
    : FilesFoundByCategory(history, context, key) {
  registerSelf();
}

DefaultFilesFoundCallback::~DefaultFilesFoundCallback() {
  unregisterSelf();
}

// Intended: a user's callback that declines is overruled, except in disabled mode, and what it has
// already walked past is not looked at again.
template <class Ops>
ObjectPtr<IValidFile> DefaultFilesFoundCallback::filesFound(const internal::SoughtFile& file,
                                                            IValidFileIterator& files) {
  FilesFoundHandler<Ops> handler(m_history, m_userCallback, file);
  ObjectPtr<IValidFile> result = handler.callUserCallback(files);
  if (m_historyMode == hmDisabled)
    return result;
  if (!result)
    result = files.next();
  if (result)
    handler.addAssociation(result->getPath());
  return result;
}

DefaultNoFilesFoundCallback::DefaultNoFilesFoundCallback(
    const ObjectPtr<ISearchHistory>& history,
    const ObjectPtr<IResolutionContext>& context,
    const wchar_t* key)
    : NoFilesFoundByCategory(history, context, key) {
  registerSelf();
}

DefaultNoFilesFoundCallback::~DefaultNoFilesFoundCallback() {
  unregisterSelf();
}

// Intended: no choice replaces a path that was remembered, also when the search was cancelled by
// that very path.
template <class Ops>
ObjectPtr<IValidFile> DefaultNoFilesFoundCallback::noFilesFound(
    const internal::SoughtFile& file, const internal::SearchOutcome& outcome) {
  NoFilesFoundHandler<Ops> handler(
      m_history, m_userCallback, file, outcome.validator, outcome.invalidFiles, outcome.validFiles);
  const ObjectPtr<IValidFile> result = handler.callUserCallback();
  if (m_historyMode == hmDisabled || m_historyMode == hmAdvisory)
    return result;
  handler.addAssociation(result ? result->getPath() : nullptr);
  return result;
}

}  // namespace QV_2_9
