// The three callbacks of a set of mappings. The set owns them and outlives them; the user's
// callbacks are borrowed. Settings are made between searches, so nothing here has a lock.

#pragma once

#include "quiver/search_callbacks.h"
#include "resolution/callbacks_by_category.h"
#include "resolution/path_mapping_table.h"

namespace QV_2_9::internal {

template <class Callback>
class MappingCallback : public Callback {
 public:
  explicit MappingCallback(PathMappingTable& mappings) : m_mappings(mappings) {}

  void setUserCallback(Callback* callback) { m_userCallback = callback; }

 protected:
  PathMappingTable& m_mappings;
  Callback* m_userCallback = nullptr;
};

class MappingSearchStarted final
    : public SearchStartedByCategory<MappingSearchStarted,
                                     MappingCallback<ISearchStartedCallback>> {
 public:
  explicit MappingSearchStarted(PathMappingTable& mappings);

  template <class Ops>
  bool searchStarted(const SoughtFile& file, IStringContainer& suggestions);
};

class MappingFilesFound final
    : public FilesFoundByCategory<MappingFilesFound, MappingCallback<IFilesFoundCallback>> {
 public:
  explicit MappingFilesFound(PathMappingTable& mappings);

  template <class Ops>
  ObjectPtr<IValidFile> filesFound(const SoughtFile& file, IValidFileIterator& files);
};

class MappingNoFilesFound final
    : public NoFilesFoundByCategory<MappingNoFilesFound, MappingCallback<INoFilesFoundCallback>> {
 public:
  explicit MappingNoFilesFound(PathMappingTable& mappings);

  template <class Ops>
  ObjectPtr<IValidFile> noFilesFound(const SoughtFile& file, const SearchOutcome& outcome);
};

}  // namespace QV_2_9::internal
