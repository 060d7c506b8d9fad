// See path_mapping.h.

#include "resolution/path_mapping.h"

#include <cstddef>
#include <optional>

#include "core/lock.h"
#include "os/path_utils.h"
#include "quiver/search_manipulator.h"

namespace QV_2_9 {

namespace {

/// Guards the reference counts of all sets: searches on several threads share them.
QVLock s_counterLock;

}  // namespace

PathMapping::PathMapping(const internal::PathMappingRow& row)
    : m_recordedPrefix(internal::toText(row.prefixes.recorded)),
      m_localPrefix(internal::toText(row.prefixes.local)),
      m_isLearned(row.isLearned),
      m_confirmations(row.confirmations) {}

ObjectPtr<IPathMappings> IPathMappings::create() {
  return new PathMappings;
}

PathMappings::PathMappings()
    : RefCountImpl(&s_counterLock),
      m_searchStarted(m_mappings),
      m_filesFound(m_mappings),
      m_noFilesFound(m_mappings) {}

// Searches on other threads let go of the callbacks before these begin to fall apart.
PathMappings::~PathMappings() {
  m_searchStarted.disconnectHandlers();
  m_filesFound.disconnectHandlers();
  m_noFilesFound.disconnectHandlers();
}

bool PathMappings::addMapping(const wchar_t* recordedPrefix, const wchar_t* localPrefix) {
  if (!recordedPrefix || isEmpty(localPrefix))
    return false;
  m_mappings.addByHand(
      {internal::splitRecordedPath(recordedPrefix), internal::splitLocalPath(localPrefix)});
  return true;
}

bool PathMappings::learn(const wchar_t* recordedPath, const wchar_t* localPath) {
  return m_mappings.learn(recordedPath, localPath);
}

ObjectPtr<IPathMapping> PathMappings::getMapping(std::int32_t index) {
  const std::optional<internal::PathMappingRow> row =
      index < 0 ? std::nullopt : m_mappings.row(static_cast<std::size_t>(index));
  return row ? new PathMapping(*row) : nullptr;
}

void PathMappings::setSearchStartedUserCallback(ISearchStartedCallback* callback) {
  m_searchStarted.setUserCallback(callback);
}

void PathMappings::setFilesFoundUserCallback(IFilesFoundCallback* callback) {
  m_filesFound.setUserCallback(callback);
}

void PathMappings::setNoFilesFoundUserCallback(INoFilesFoundCallback* callback) {
  m_noFilesFound.setUserCallback(callback);
}

bool PathMappings::useInDefaultCallbacks(ISearchManipulator* manipulator, const wchar_t* key) {
  return manipulator && manipulator->setSearchStartedUserCallback(key, &m_searchStarted) &&
         manipulator->setFilesFoundUserCallback(key, &m_filesFound) &&
         manipulator->setNoFilesFoundUserCallback(key, &m_noFilesFound);
}

}  // namespace QV_2_9
