// Turns the three operations of a callback interface, one for each category, into one template of
// the class that derives.
//
// `Base` implements the interface but for these operations; `Self` derives from the adapter and has
// the template. Its definition may stand in a source file, with the constructor of `Self`.

#pragma once

#include "quiver/search_callbacks.h"
#include "search/category_ops.h"

namespace QV_2_9::internal {

/// `Self` has: template <class Ops> bool searchStarted(const SoughtFile&, IStringContainer&)
template <class Self, class Base>
class SearchStartedByCategory : public Base {
 public:
  bool onBinSearchStarted(const wchar_t* binFile, IStringContainer& suggestions) final {
    return self().template searchStarted<BinOps>({binFile, L"", L""}, suggestions);
  }
  bool onSymSearchStarted(const wchar_t* symFile,
                          const wchar_t* binaryFile,
                          const wchar_t* checksum,
                          IStringContainer& suggestions) final {
    return self().template searchStarted<SymOps>({symFile, binaryFile, checksum}, suggestions);
  }
  bool onSrcSearchStarted(const wchar_t* srcFile,
                          const wchar_t* binaryFile,
                          const wchar_t* checksum,
                          IStringContainer& suggestions) final {
    return self().template searchStarted<SrcOps>({srcFile, binaryFile, checksum}, suggestions);
  }

 protected:
  using Base::Base;
  ~SearchStartedByCategory() override = default;

 private:
  Self& self() { return static_cast<Self&>(*this); }
};

/// `Self` has:
///   template <class Ops> ObjectPtr<IValidFile> filesFound(const SoughtFile&, IValidFileIterator&)
template <class Self, class Base>
class FilesFoundByCategory : public Base {
 public:
  ObjectPtr<IValidFile> onBinFilesFound(const wchar_t* binFile, IValidFileIterator& files) final {
    return self().template filesFound<BinOps>({binFile, L"", L""}, files);
  }
  ObjectPtr<IValidFile> onSymFilesFound(const wchar_t* symFile,
                                        const wchar_t* binaryFile,
                                        const wchar_t* checksum,
                                        IValidFileIterator& files) final {
    return self().template filesFound<SymOps>({symFile, binaryFile, checksum}, files);
  }
  ObjectPtr<IValidFile> onSrcFilesFound(const wchar_t* srcFile,
                                        const wchar_t* binaryFile,
                                        const wchar_t* checksum,
                                        IValidFileIterator& files) final {
    return self().template filesFound<SrcOps>({srcFile, binaryFile, checksum}, files);
  }

 protected:
  using Base::Base;
  ~FilesFoundByCategory() override = default;

 private:
  Self& self() { return static_cast<Self&>(*this); }
};

/// What a no-files-found callback may look at; valid for the one call.
struct SearchOutcome {
  IValidator& validator;
  IInvalidFileIterator& invalidFiles;
  IValidFileIterator& validFiles;
};

/// `Self` has:
///   template <class Ops> ObjectPtr<IValidFile> noFilesFound(const SoughtFile&, const
///   SearchOutcome&)
template <class Self, class Base>
class NoFilesFoundByCategory : public Base {
 public:
  ObjectPtr<IValidFile> onBinNoFilesFound(const wchar_t* binFile,
                                          IValidator& validator,
                                          IInvalidFileIterator& invalidFiles,
                                          IValidFileIterator& validFiles) final {
    return self().template noFilesFound<BinOps>({binFile, L"", L""},
                                                {validator, invalidFiles, validFiles});
  }
  ObjectPtr<IValidFile> onSymNoFilesFound(const wchar_t* symFile,
                                          const wchar_t* binaryFile,
                                          const wchar_t* checksum,
                                          IValidator& validator,
                                          IInvalidFileIterator& invalidFiles,
                                          IValidFileIterator& validFiles) final {
    return self().template noFilesFound<SymOps>({symFile, binaryFile, checksum},
                                                {validator, invalidFiles, validFiles});
  }
  ObjectPtr<IValidFile> onSrcNoFilesFound(const wchar_t* srcFile,
                                          const wchar_t* binaryFile,
                                          const wchar_t* checksum,
                                          IValidator& validator,
                                          IInvalidFileIterator& invalidFiles,
                                          IValidFileIterator& validFiles) final {
    return self().template noFilesFound<SrcOps>({srcFile, binaryFile, checksum},
                                                {validator, invalidFiles, validFiles});
  }

 protected:
  using Base::Base;
  ~NoFilesFoundByCategory() override = default;

 private:
  Self& self() { return static_cast<Self&>(*this); }
};

}  // namespace QV_2_9::internal
