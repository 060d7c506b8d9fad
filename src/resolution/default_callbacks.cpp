// See default_callbacks.h. Each operation runs the algorithm of its kind over a handler for its
// category.

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
    : DefaultCallback(history, context, key) {
  registerSelf();
}

DefaultSearchStartedCallback::~DefaultSearchStartedCallback() {
  unregisterSelf();
}

bool DefaultSearchStartedCallback::onBinSearchStarted(const wchar_t* binFile,
                                                      IStringContainer& suggestions) {
  BinSearchStartedHandler handler(m_history, m_userCallback, {binFile, L"", L""});
  return searchStarted(handler, suggestions);
}

bool DefaultSearchStartedCallback::onSymSearchStarted(const wchar_t* symFile,
                                                      const wchar_t* binaryFile,
                                                      const wchar_t* checksum,
                                                      IStringContainer& suggestions) {
  SymSearchStartedHandler handler(m_history, m_userCallback, {symFile, binaryFile, checksum});
  return searchStarted(handler, suggestions);
}

bool DefaultSearchStartedCallback::onSrcSearchStarted(const wchar_t* srcFile,
                                                      const wchar_t* binaryFile,
                                                      const wchar_t* checksum,
                                                      IStringContainer& suggestions) {
  SrcSearchStartedHandler handler(m_history, m_userCallback, {srcFile, binaryFile, checksum});
  return searchStarted(handler, suggestions);
}

bool DefaultSearchStartedCallback::searchStarted(ISearchStartedHandler& handler,
                                                 IStringContainer& suggestions) {
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
    : DefaultCallback(history, context, key) {
  registerSelf();
}

DefaultFilesFoundCallback::~DefaultFilesFoundCallback() {
  unregisterSelf();
}

ObjectPtr<IValidFile> DefaultFilesFoundCallback::onBinFilesFound(const wchar_t* binFile,
                                                                 IValidFileIterator& files) {
  BinFilesFoundHandler handler(m_history, m_userCallback, {binFile, L"", L""});
  return filesFound(handler, files);
}

ObjectPtr<IValidFile> DefaultFilesFoundCallback::onSymFilesFound(const wchar_t* symFile,
                                                                 const wchar_t* binaryFile,
                                                                 const wchar_t* checksum,
                                                                 IValidFileIterator& files) {
  SymFilesFoundHandler handler(m_history, m_userCallback, {symFile, binaryFile, checksum});
  return filesFound(handler, files);
}

ObjectPtr<IValidFile> DefaultFilesFoundCallback::onSrcFilesFound(const wchar_t* srcFile,
                                                                 const wchar_t* binaryFile,
                                                                 const wchar_t* checksum,
                                                                 IValidFileIterator& files) {
  SrcFilesFoundHandler handler(m_history, m_userCallback, {srcFile, binaryFile, checksum});
  return filesFound(handler, files);
}

// Intended: a user's callback that declines is overruled, except in disabled mode, and what it has
// already walked past is not looked at again.
ObjectPtr<IValidFile> DefaultFilesFoundCallback::filesFound(IFilesFoundHandler& handler,
                                                            IValidFileIterator& files) {
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
    : DefaultCallback(history, context, key) {
  registerSelf();
}

DefaultNoFilesFoundCallback::~DefaultNoFilesFoundCallback() {
  unregisterSelf();
}

ObjectPtr<IValidFile> DefaultNoFilesFoundCallback::onBinNoFilesFound(
    const wchar_t* binFile,
    IValidator& validator,
    IInvalidFileIterator& invalidFiles,
    IValidFileIterator& validFiles) {
  BinNoFilesFoundHandler handler(
      m_history, m_userCallback, {binFile, L"", L""}, validator, invalidFiles, validFiles);
  return noFilesFound(handler);
}

ObjectPtr<IValidFile> DefaultNoFilesFoundCallback::onSymNoFilesFound(
    const wchar_t* symFile,
    const wchar_t* binaryFile,
    const wchar_t* checksum,
    IValidator& validator,
    IInvalidFileIterator& invalidFiles,
    IValidFileIterator& validFiles) {
  SymNoFilesFoundHandler handler(m_history,
                                 m_userCallback,
                                 {symFile, binaryFile, checksum},
                                 validator,
                                 invalidFiles,
                                 validFiles);
  return noFilesFound(handler);
}

ObjectPtr<IValidFile> DefaultNoFilesFoundCallback::onSrcNoFilesFound(
    const wchar_t* srcFile,
    const wchar_t* binaryFile,
    const wchar_t* checksum,
    IValidator& validator,
    IInvalidFileIterator& invalidFiles,
    IValidFileIterator& validFiles) {
  SrcNoFilesFoundHandler handler(m_history,
                                 m_userCallback,
                                 {srcFile, binaryFile, checksum},
                                 validator,
                                 invalidFiles,
                                 validFiles);
  return noFilesFound(handler);
}

// Intended: no choice replaces a path that was remembered, also when the search was cancelled by
// that very path.
ObjectPtr<IValidFile> DefaultNoFilesFoundCallback::noFilesFound(INoFilesFoundHandler& handler) {
  const ObjectPtr<IValidFile> result = handler.callUserCallback();
  if (m_historyMode == hmDisabled || m_historyMode == hmAdvisory)
    return result;
  handler.addAssociation(result ? result->getPath() : nullptr);
  return result;
}

}  // namespace QV_2_9
