// See resolution_context_mgr.h.

#include "resolution/resolution_context_mgr.h"

#include <ctime>

#include "os/path_utils.h"
#include "resolution/archive.h"
#include "resolution/basic_resolution_context.h"
#include "resolution/category_folders.h"

namespace QV_2_9 {
namespace {

// The one manager, null while there is none.
ResolutionContextMgr* s_manager = nullptr;

// The blank sorts before every printable character: a result directory's own folders come first.
constexpr const wchar_t* kResultDirKey = L" hidden_result_dir_key";

void chainSearchDirs(IMetadata& metadata, ISearchDirChain& chain) {
  const ObjectPtr<ISearchDirKeyIterator> entries = metadata.getSearchDirKeys();
  const wchar_t* key = nullptr;
  for (ObjectPtr<ISearchDirContainer> dirs; entries->get(&key, dirs); entries->next())
    chain.addContainer(dirs);
}

void addArchiveDirs(IMetadata& metadata, IEditableSearchDirContainer& dirs) {
  const std::wstring archive = metadata.getArchiveDir();
  if (archive.empty())
    return;
  for (const auto& [category, folder] : internal::kCategoryFolders)
    dirs.addSearchDir(category, joinPath(archive.c_str(), folder).c_str(), true, true);
}

/// Installs every kind that no nearer context had.
void installMissingCallbacks(const CallbackSet& callbacks, IEditableSearchEnv& env) {
  if (!env.getSearchStartedCallback().getCallback())
    env.setSearchStartedCallback(callbacks.searchStarted);
  if (!env.getFilesFoundCallback().getCallback())
    env.setFilesFoundCallback(callbacks.filesFound);
  if (!env.getNoFilesFoundCallback().getCallback())
    env.setNoFilesFoundCallback(callbacks.noFilesFound);
  if (!env.getConfidenceLevelPolicyCallback().getCallback())
    env.setConfidenceLevelPolicyCallback(callbacks.confidenceLevelPolicy);
}

/// Returns the folders that a result directory serves searches with: of each category its own,
/// symbol files lie beside binaries too, and the directory itself serves all.
ObjectPtr<IEditableSearchDirContainer> resultDirFolders(const wchar_t* resultDir) {
  struct Row {
    search_category_t category;
    search_category_t folder;
    bool recursive;
  };
  static constexpr Row kRows[] = {
      {scBinaryFiles, scBinaryFiles, false},
      {scSymbolFiles, scSymbolFiles, false},
      {scSymbolFiles, scBinaryFiles, false},
      {scSourceFiles, scSourceFiles, true},
      {scAllFiles, scAllFiles, true},
  };
  const ObjectPtr<IEditableSearchDirContainer> dirs = IEditableSearchDirContainer::create();
  for (const Row& row : kRows) {
    const std::wstring dir = joinPath(resultDir, internal::categoryFolder(row.folder));
    dirs->addSearchDir(row.category, dir.c_str(), row.recursive, true);
  }
  dirs->addSearchDir(scAllFiles, resultDir, false, true);
  return dirs;
}

}  // namespace

ObjectPtr<IResolutionContextMgr> IResolutionContextMgr::create() {
  if (!s_manager)
    s_manager = new ResolutionContextMgr;
  return s_manager;
}

ResolutionContextMgr::~ResolutionContextMgr() {
  s_manager = nullptr;
}

bool ResolutionContextMgr::setParentContext(IResolutionContext* child, IResolutionContext* parent) {
  if (parent)
    m_parents[internal::contextName(child)] = new BasicResolutionContext(*parent);
  return true;
}

void ResolutionContextMgr::setSearchDirs(IResolutionContext* context,
                                         const ObjectPtr<ISearchDirContainer>& dirs,
                                         const wchar_t* key) {
  if (key)
    metadataOf(context)->setSearchDirs(dirs, key);
}

void ResolutionContextMgr::setArchiveDir(IResolutionContext* context, const wchar_t* dir) {
  metadataOf(context)->setArchiveDir(dir);
}

bool ResolutionContextMgr::setSearchStartedCallback(IResolutionContext* context,
                                                    const wchar_t* key,
                                                    ISearchStartedCallback* callback) {
  if (!key)
    return false;
  metadataOf(context)->setSearchStartedCallback(key, callback);
  return true;
}

bool ResolutionContextMgr::setFilesFoundCallback(IResolutionContext* context,
                                                 const wchar_t* key,
                                                 IFilesFoundCallback* callback) {
  if (!key)
    return false;
  metadataOf(context)->setFilesFoundCallback(key, callback);
  return true;
}

bool ResolutionContextMgr::setNoFilesFoundCallback(IResolutionContext* context,
                                                   const wchar_t* key,
                                                   INoFilesFoundCallback* callback) {
  if (!key)
    return false;
  metadataOf(context)->setNoFilesFoundCallback(key, callback);
  return true;
}

bool ResolutionContextMgr::setConfidenceLevelPolicyCallback(
    IResolutionContext* context, const wchar_t* key, IConfidenceLevelPolicyCallback* callback) {
  if (!key)
    return false;
  metadataOf(context)->setConfidenceLevelPolicyCallback(key, callback);
  return true;
}

ObjectPtr<ISearchEnv> ResolutionContextMgr::createSearchEnv(
    IResolutionContext* context, const wchar_t* key, const ObjectPtr<IEnvironmentInfo>& envInfo) {
  const ObjectPtr<IEditableSearchEnv> env = IEditableSearchEnv::create();
  const ObjectPtr<ISearchDirChain> chain = ISearchDirChain::create();
  const ObjectPtr<IEditableSearchDirContainer> archives = IEditableSearchDirContainer::create();
  for (ObjectPtr<IResolutionContext> at(context); at; at = parentOf(at.get())) {
    const ObjectPtr<IMetadata> metadata = metadataOf(at.get());
    chainSearchDirs(*metadata, *chain);
    addArchiveDirs(*metadata, *archives);
    if (key)
      installMissingCallbacks(metadata->getCallbacks(key), *env);
  }
  env->setArchiveSearchDirs(archives);
  env->setSearchDirs(chain);
  env->setEnvironmentInfo(envInfo);
  return env;
}

ObjectPtr<IFileSearch> ResolutionContextMgr::createFileSearch(
    IResolutionContext* context, const wchar_t* key, const ObjectPtr<IEnvironmentInfo>& envInfo) {
  return IFileSearch::create(createSearchEnv(context, key, envInfo));
}

ObjectPtr<IResolutionContext> ResolutionContextMgr::getResultDirContext(const wchar_t* resultDir) {
  const ObjectPtr<IResolutionContext> context = createContext(resultDir, true);
  if (!context)
    return nullptr;
  const ObjectPtr<IMetadata> metadata = metadataOf(context.get());
  metadata->setArchiveDir(joinPath(resultDir, internal::kArchiveFolder).c_str());
  if (!metadata->getSearchDirs(kResultDirKey))
    metadata->setSearchDirs(resultDirFolders(resultDir), kResultDirKey);
  return context;
}

ObjectPtr<IResolutionContext> ResolutionContextMgr::createUserContext() {
  return new BasicResolutionContext(getUserName());
}

ObjectPtr<IResolutionContext> ResolutionContextMgr::createContext(const wchar_t* path,
                                                                  bool isDirectory) {
  if (isEmpty(path))
    return nullptr;
  return new BasicResolutionContext(toCanonicalAbsolutePath(path, isDirectory));
}

archive_result_t ResolutionContextMgr::archiveFile(IResolutionContext* context,
                                                   const wchar_t* file,
                                                   std::int32_t category) {
  for (ObjectPtr<IResolutionContext> at(context); at; at = parentOf(at.get())) {
    const std::wstring archive = metadataOf(at.get())->getArchiveDir();
    if (!archive.empty())
      return internal::archiveInto(archive.c_str(), file, category, std::time(nullptr));
  }
  return arNoArchiveDir;
}

ObjectPtr<IMetadata> ResolutionContextMgr::metadataOf(IResolutionContext* context) {
  ObjectPtr<IMetadata>& entry = m_metadata[internal::contextName(context)];
  if (!entry)
    entry = new Metadata;
  return entry;
}

ObjectPtr<IResolutionContext> ResolutionContextMgr::parentOf(IResolutionContext* context) const {
  const auto entry = m_parents.find(internal::contextName(context));
  return entry == m_parents.end() ? nullptr : entry->second;
}

}  // namespace QV_2_9
