// What differs between binaries, symbol files and source files: which operation of each callback
// interface is theirs. The only place that spells the three categories out.

#pragma once

#include "quiver/search_callbacks.h"
#include "quiver/search_history.h"
#include "quiver/search_results.h"
#include "quiver/string_container.h"
#include "quiver/validation.h"

namespace QV_2_9::internal {

/// The file a search is about. `binary` and `checksum` are empty for a binary; none is ever null.
struct SoughtFile {
  const wchar_t* name;
  const wchar_t* binary;
  const wchar_t* checksum;
};

struct BinOps {
  static constexpr search_category_t kCategory = scBinaryFiles;

  static bool searchStarted(ISearchStartedCallback& callback,
                            const SoughtFile& file,
                            IStringContainer& suggestions) {
    return callback.onBinSearchStarted(file.name, suggestions);
  }
  static ObjectPtr<IValidFile> filesFound(IFilesFoundCallback& callback,
                                          const SoughtFile& file,
                                          IValidFileIterator& files) {
    return callback.onBinFilesFound(file.name, files);
  }
  static ObjectPtr<IValidFile> noFilesFound(INoFilesFoundCallback& callback,
                                            const SoughtFile& file,
                                            IValidator& validator,
                                            IInvalidFileIterator& invalidFiles,
                                            IValidFileIterator& validFiles) {
    return callback.onBinNoFilesFound(file.name, validator, invalidFiles, validFiles);
  }
  static ObjectPtr<IFileAssociation> findAssociation(ISearchHistory& history,
                                                     const SoughtFile& file) {
    return history.findBinFileAssociation(file.name);
  }
  static void addAssociation(ISearchHistory& history, const SoughtFile& file, const wchar_t* path) {
    history.addBinFileAssociation(file.name, path);
  }
};

struct SymOps {
  static constexpr search_category_t kCategory = scSymbolFiles;

  static bool searchStarted(ISearchStartedCallback& callback,
                            const SoughtFile& file,
                            IStringContainer& suggestions) {
    return callback.onSymSearchStarted(file.name, file.binary, file.checksum, suggestions);
  }
  static ObjectPtr<IValidFile> filesFound(IFilesFoundCallback& callback,
                                          const SoughtFile& file,
                                          IValidFileIterator& files) {
    return callback.onSymFilesFound(file.name, file.binary, file.checksum, files);
  }
  static ObjectPtr<IValidFile> noFilesFound(INoFilesFoundCallback& callback,
                                            const SoughtFile& file,
                                            IValidator& validator,
                                            IInvalidFileIterator& invalidFiles,
                                            IValidFileIterator& validFiles) {
    return callback.onSymNoFilesFound(
        file.name, file.binary, file.checksum, validator, invalidFiles, validFiles);
  }
  static ObjectPtr<IFileAssociation> findAssociation(ISearchHistory& history,
                                                     const SoughtFile& file) {
    return history.findSymFileAssociation(file.name, file.binary, file.checksum);
  }
  static void addAssociation(ISearchHistory& history, const SoughtFile& file, const wchar_t* path) {
    history.addSymFileAssociation(file.name, file.binary, file.checksum, path);
  }
};

struct SrcOps {
  static constexpr search_category_t kCategory = scSourceFiles;

  static bool searchStarted(ISearchStartedCallback& callback,
                            const SoughtFile& file,
                            IStringContainer& suggestions) {
    return callback.onSrcSearchStarted(file.name, file.binary, file.checksum, suggestions);
  }
  static ObjectPtr<IValidFile> filesFound(IFilesFoundCallback& callback,
                                          const SoughtFile& file,
                                          IValidFileIterator& files) {
    return callback.onSrcFilesFound(file.name, file.binary, file.checksum, files);
  }
  static ObjectPtr<IValidFile> noFilesFound(INoFilesFoundCallback& callback,
                                            const SoughtFile& file,
                                            IValidator& validator,
                                            IInvalidFileIterator& invalidFiles,
                                            IValidFileIterator& validFiles) {
    return callback.onSrcNoFilesFound(
        file.name, file.binary, file.checksum, validator, invalidFiles, validFiles);
  }
  static ObjectPtr<IFileAssociation> findAssociation(ISearchHistory& history,
                                                     const SoughtFile& file) {
    return history.findSrcFileAssociation(file.name, file.binary, file.checksum);
  }
  static void addAssociation(ISearchHistory& history, const SoughtFile& file, const wchar_t* path) {
    history.addSrcFileAssociation(file.name, file.binary, file.checksum, path);
  }
};

}  // namespace QV_2_9::internal
