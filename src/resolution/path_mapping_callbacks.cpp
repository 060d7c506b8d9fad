// See path_mapping_callbacks.h.

#include "resolution/path_mapping_callbacks.h"

#include <string>

#include "quiver/search_results.h"
#include "quiver/string_container.h"
#include "quiver/validation.h"
#include "resolution/path_mapping_observer.h"

namespace QV_2_9::internal {

MappingSearchStarted::MappingSearchStarted(PathMappingTable& mappings)
    : SearchStartedByCategory(mappings) {}

template <class Ops>
bool MappingSearchStarted::searchStarted(const SoughtFile& file, IStringContainer& suggestions) {
  if (m_userCallback && !Ops::searchStarted(*m_userCallback, file, suggestions))
    return false;
  for (const std::wstring& place : m_mappings.placesOf(file.name)) suggestions.add(place.c_str());
  return true;
}

MappingFilesFound::MappingFilesFound(PathMappingTable& mappings) : FilesFoundByCategory(mappings) {}

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

MappingNoFilesFound::MappingNoFilesFound(PathMappingTable& mappings)
    : NoFilesFoundByCategory(mappings) {}

template <class Ops>
ObjectPtr<IValidFile> MappingNoFilesFound::noFilesFound(const SoughtFile& file,
                                                        const SearchOutcome& outcome) {
  observeRejectedFiles(m_mappings, file.name, outcome.invalidFiles);
  if (!m_userCallback)
    return nullptr;
  const ObjectPtr<IValidFile> answer = Ops::noFilesFound(
      *m_userCallback, file, outcome.validator, outcome.invalidFiles, outcome.validFiles);
  if (answer && !isRejected(*answer, outcome.invalidFiles))
    learnFromAnswer(m_mappings, file.name, *answer);
  return answer;
}

}  // namespace QV_2_9::internal
