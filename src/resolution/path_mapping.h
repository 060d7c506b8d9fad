// The set of mappings that callers hold: a table, which has its own lock, and the callbacks over
// it.

#pragma once

#include <cstdint>
#include <string>

#include "quiver/path_mapping.h"
#include "quiver/ref_count.h"
#include "resolution/path_mapping_callbacks.h"
#include "resolution/path_mapping_table.h"

namespace QV_2_9 {

class PathMapping final : public RefCountImpl<IPathMapping> {
 public:
  explicit PathMapping(const internal::PathMappingRow& row);

  const wchar_t* getRecordedPrefix() override { return m_recordedPrefix.c_str(); }
  const wchar_t* getLocalPrefix() override { return m_localPrefix.c_str(); }
  bool isLearned() override { return m_isLearned; }
  std::int32_t getConfirmationCount() override { return m_confirmations; }

 private:
  const std::wstring m_recordedPrefix;
  const std::wstring m_localPrefix;
  const bool m_isLearned;
  const std::int32_t m_confirmations;
};

class PathMappings final : public RefCountImpl<IPathMappings> {
 public:
  PathMappings();
  ~PathMappings() override;

  bool addMapping(const wchar_t* recordedPrefix, const wchar_t* localPrefix) override;
  bool learn(const wchar_t* recordedPath, const wchar_t* localPath) override;
  void clearMappings() override { m_mappings.clear(); }
  std::int32_t getMappingCount() override { return static_cast<std::int32_t>(m_mappings.size()); }
  ObjectPtr<IPathMapping> getMapping(std::int32_t index) override;
  ISearchStartedCallback* getSearchStartedCallback() override { return &m_searchStarted; }
  IFilesFoundCallback* getFilesFoundCallback() override { return &m_filesFound; }
  INoFilesFoundCallback* getNoFilesFoundCallback() override { return &m_noFilesFound; }
  void setSearchStartedUserCallback(ISearchStartedCallback* callback) override;
  void setFilesFoundUserCallback(IFilesFoundCallback* callback) override;
  void setNoFilesFoundUserCallback(INoFilesFoundCallback* callback) override;
  bool useInDefaultCallbacks(ISearchManipulator* manipulator, const wchar_t* key) override;

 private:
  internal::PathMappingTable m_mappings;
  internal::MappingSearchStarted m_searchStarted;
  internal::MappingFilesFound m_filesFound;
  internal::MappingNoFilesFound m_noFilesFound;
};

}  // namespace QV_2_9
