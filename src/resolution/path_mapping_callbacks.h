// The three callbacks of a set of mappings. The set owns them and outlives them; the user's
// callbacks are borrowed. Settings are made between searches, so nothing here has a lock.

#pragma once

#include "quiver/search_callbacks.h"
#include "resolution/path_mapping_table.h"
#include "search/category_ops.h"

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

class MappingSearchStarted final : public MappingCallback<ISearchStartedCallback> {
 public:
  using MappingCallback::MappingCallback;

  bool onBinSearchStarted(const wchar_t* binFile, IStringContainer& suggestions) override;
  bool onSymSearchStarted(const wchar_t* symFile,
                          const wchar_t* binaryFile,
                          const wchar_t* checksum,
                          IStringContainer& suggestions) override;
  bool onSrcSearchStarted(const wchar_t* srcFile,
                          const wchar_t* binaryFile,
                          const wchar_t* checksum,
                          IStringContainer& suggestions) override;

 private:
  template <class Ops>
  bool searchStarted(const SoughtFile& file, IStringContainer& suggestions);
};

class MappingFilesFound final : public MappingCallback<IFilesFoundCallback> {
 public:
  using MappingCallback::MappingCallback;

  ObjectPtr<IValidFile> onBinFilesFound(const wchar_t* binFile, IValidFileIterator& files) override;
  ObjectPtr<IValidFile> onSymFilesFound(const wchar_t* symFile,
                                        const wchar_t* binaryFile,
                                        const wchar_t* checksum,
                                        IValidFileIterator& files) override;
  ObjectPtr<IValidFile> onSrcFilesFound(const wchar_t* srcFile,
                                        const wchar_t* binaryFile,
                                        const wchar_t* checksum,
                                        IValidFileIterator& files) override;

 private:
  template <class Ops>
  ObjectPtr<IValidFile> filesFound(const SoughtFile& file, IValidFileIterator& files);
};

class MappingNoFilesFound final : public MappingCallback<INoFilesFoundCallback> {
 public:
  using MappingCallback::MappingCallback;

  ObjectPtr<IValidFile> onBinNoFilesFound(const wchar_t* binFile,
                                          IValidator& validator,
                                          IInvalidFileIterator& invalidFiles,
                                          IValidFileIterator& validFiles) override;
  ObjectPtr<IValidFile> onSymNoFilesFound(const wchar_t* symFile,
                                          const wchar_t* binaryFile,
                                          const wchar_t* checksum,
                                          IValidator& validator,
                                          IInvalidFileIterator& invalidFiles,
                                          IValidFileIterator& validFiles) override;
  ObjectPtr<IValidFile> onSrcNoFilesFound(const wchar_t* srcFile,
                                          const wchar_t* binaryFile,
                                          const wchar_t* checksum,
                                          IValidator& validator,
                                          IInvalidFileIterator& invalidFiles,
                                          IValidFileIterator& validFiles) override;

 private:
  template <class Ops>
  ObjectPtr<IValidFile> noFilesFound(const SoughtFile& file,
                                     IValidator& validator,
                                     IInvalidFileIterator& invalidFiles,
                                     IValidFileIterator& validFiles);
};

}  // namespace QV_2_9::internal
