// See path_mapping_callbacks.h. Each operation is one template over its category.

#include "resolution/path_mapping_callbacks.h"

#include <string>

#include "quiver/search_results.h"
#include "quiver/string_container.h"
#include "quiver/validation.h"
#include "resolution/path_mapping_observer.h"

namespace QV_2_9::internal {

template <class Ops>
bool MappingSearchStarted::searchStarted(const SoughtFile& file, IStringContainer& suggestions) {
  if (m_userCallback && !Ops::searchStarted(*m_userCallback, file, suggestions))
    return false;
  for (const std::wstring& place : m_mappings.placesOf(file.name)) suggestions.add(place.c_str());
  return true;
}

bool MappingSearchStarted::onBinSearchStarted(const wchar_t* binFile,
                                              IStringContainer& suggestions) {
  return searchStarted<BinOps>({binFile, L"", L""}, suggestions);
}

bool MappingSearchStarted::onSymSearchStarted(const wchar_t* symFile,
                                              const wchar_t* binaryFile,
                                              const wchar_t* checksum,
                                              IStringContainer& suggestions) {
  return searchStarted<SymOps>({symFile, binaryFile, checksum}, suggestions);
}

bool MappingSearchStarted::onSrcSearchStarted(const wchar_t* srcFile,
                                              const wchar_t* binaryFile,
                                              const wchar_t* checksum,
                                              IStringContainer& suggestions) {
  return searchStarted<SrcOps>({srcFile, binaryFile, checksum}, suggestions);
}

template <class Ops>
ObjectPtr<IValidFile> MappingFilesFound::filesFound(const SoughtFile& file,
                                                    IValidFileIterator& files) {
  const ObjectPtr<IValidFile> first = files.next();
  if (!first)
    return nullptr;
  observeFirstFile(m_mappings, file.name, *first);
  files.reset();
  const ObjectPtr<IValidFile> answer =
      m_userCallback ? Ops::filesFound(*m_userCallback, file, files) : first;
  if (answer)
    learnFromAnswer(m_mappings, file.name, *answer);
  return answer;
}

ObjectPtr<IValidFile> MappingFilesFound::onBinFilesFound(const wchar_t* binFile,
                                                         IValidFileIterator& files) {
  return filesFound<BinOps>({binFile, L"", L""}, files);
}

ObjectPtr<IValidFile> MappingFilesFound::onSymFilesFound(const wchar_t* symFile,
                                                         const wchar_t* binaryFile,
                                                         const wchar_t* checksum,
                                                         IValidFileIterator& files) {
  return filesFound<SymOps>({symFile, binaryFile, checksum}, files);
}

ObjectPtr<IValidFile> MappingFilesFound::onSrcFilesFound(const wchar_t* srcFile,
                                                         const wchar_t* binaryFile,
                                                         const wchar_t* checksum,
                                                         IValidFileIterator& files) {
  return filesFound<SrcOps>({srcFile, binaryFile, checksum}, files);
}

template <class Ops>
ObjectPtr<IValidFile> MappingNoFilesFound::noFilesFound(const SoughtFile& file,
                                                        IValidator& validator,
                                                        IInvalidFileIterator& invalidFiles,
                                                        IValidFileIterator& validFiles) {
  observeRejectedFiles(m_mappings, file.name, invalidFiles);
  if (!m_userCallback)
    return nullptr;
  const ObjectPtr<IValidFile> answer =
      Ops::noFilesFound(*m_userCallback, file, validator, invalidFiles, validFiles);
  if (answer)
    learnFromAnswer(m_mappings, file.name, *answer);
  return answer;
}

ObjectPtr<IValidFile> MappingNoFilesFound::onBinNoFilesFound(const wchar_t* binFile,
                                                             IValidator& validator,
                                                             IInvalidFileIterator& invalidFiles,
                                                             IValidFileIterator& validFiles) {
  return noFilesFound<BinOps>({binFile, L"", L""}, validator, invalidFiles, validFiles);
}

ObjectPtr<IValidFile> MappingNoFilesFound::onSymNoFilesFound(const wchar_t* symFile,
                                                             const wchar_t* binaryFile,
                                                             const wchar_t* checksum,
                                                             IValidator& validator,
                                                             IInvalidFileIterator& invalidFiles,
                                                             IValidFileIterator& validFiles) {
  return noFilesFound<SymOps>({symFile, binaryFile, checksum}, validator, invalidFiles, validFiles);
}

ObjectPtr<IValidFile> MappingNoFilesFound::onSrcNoFilesFound(const wchar_t* srcFile,
                                                             const wchar_t* binaryFile,
                                                             const wchar_t* checksum,
                                                             IValidator& validator,
                                                             IInvalidFileIterator& invalidFiles,
                                                             IValidFileIterator& validFiles) {
  return noFilesFound<SrcOps>({srcFile, binaryFile, checksum}, validator, invalidFiles, validFiles);
}

}  // namespace QV_2_9::internal
