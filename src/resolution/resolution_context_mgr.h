// The context manager: metadata and parent by context name, environments built from them.
//
// One object per process, found through a plain pointer that holds no reference; the destructor
// clears it. No lock: callers serialise all use, `create` included.

#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "quiver/ref_count.h"
#include "quiver/resolution_context.h"
#include "resolution/metadata.h"

namespace QV_2_9 {

class ResolutionContextMgr final : public RefCountImpl<IResolutionContextMgr> {
 public:
  ResolutionContextMgr() = default;
  ~ResolutionContextMgr() override;

  bool setParentContext(IResolutionContext* child, IResolutionContext* parent) override;
  void setSearchDirs(IResolutionContext* context,
                     const ObjectPtr<ISearchDirContainer>& dirs,
                     const wchar_t* key) override;
  void setArchiveDir(IResolutionContext* context, const wchar_t* dir) override;
  bool setSearchStartedCallback(IResolutionContext* context,
                                const wchar_t* key,
                                ISearchStartedCallback* callback) override;
  bool setFilesFoundCallback(IResolutionContext* context,
                             const wchar_t* key,
                             IFilesFoundCallback* callback) override;
  bool setNoFilesFoundCallback(IResolutionContext* context,
                               const wchar_t* key,
                               INoFilesFoundCallback* callback) override;
  bool setConfidenceLevelPolicyCallback(IResolutionContext* context,
                                        const wchar_t* key,
                                        IConfidenceLevelPolicyCallback* callback) override;
  ObjectPtr<ISearchEnv> createSearchEnv(IResolutionContext* context,
                                        const wchar_t* key,
                                        const ObjectPtr<IEnvironmentInfo>& envInfo) override;
  ObjectPtr<IFileSearch> createFileSearch(IResolutionContext* context,
                                          const wchar_t* key,
                                          const ObjectPtr<IEnvironmentInfo>& envInfo) override;
  ObjectPtr<IResolutionContext> getResultDirContext(const wchar_t* resultDir) override;
  ObjectPtr<IResolutionContext> createUserContext() override;
  ObjectPtr<IResolutionContext> createContext(const wchar_t* path, bool isDirectory) override;
  archive_result_t archiveFile(IResolutionContext* context,
                               const wchar_t* file,
                               std::int32_t category) override;

 private:
  /// Makes empty metadata when the context has none.
  ObjectPtr<IMetadata> metadataOf(IResolutionContext* context);
  ObjectPtr<IResolutionContext> parentOf(IResolutionContext* context) const;

  std::map<std::wstring, ObjectPtr<IMetadata>> m_metadata;
  std::map<std::wstring, ObjectPtr<IResolutionContext>> m_parents;
};

}  // namespace QV_2_9
