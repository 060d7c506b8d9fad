// The search history and its entries. No lock: searches that share a history are serialised by
// their callers.

#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <tuple>

#include "quiver/ref_count.h"
#include "quiver/search_history.h"

namespace QV_2_9 {

class FileAssociation final : public RefCountImpl<IFileAssociation> {
 public:
  explicit FileAssociation(const wchar_t* path) : m_path(path ? path : L"") {}

  const wchar_t* getPath() override { return m_path.empty() ? nullptr : m_path.c_str(); }

 private:
  const std::wstring m_path;
};

/// What was asked for. Binary requests have a name only.
struct FileRequestKey {
  std::wstring name;
  std::wstring binary;
  std::wstring checksum;

  bool operator<(const FileRequestKey& other) const {
    return std::tie(name, binary, checksum) < std::tie(other.name, other.binary, other.checksum);
  }
};

class SearchHistory final : public RefCountImpl<ISearchHistory> {
 public:
  ObjectPtr<IFileAssociation> addBinFileAssociation(const wchar_t* binFile,
                                                    const wchar_t* path) override;
  ObjectPtr<IFileAssociation> addSymFileAssociation(const wchar_t* symFile,
                                                    const wchar_t* binaryFile,
                                                    const wchar_t* checksum,
                                                    const wchar_t* path) override;
  ObjectPtr<IFileAssociation> addSrcFileAssociation(const wchar_t* srcFile,
                                                    const wchar_t* binaryFile,
                                                    const wchar_t* checksum,
                                                    const wchar_t* path) override;
  void clearAssociations(std::int32_t category) override;
  ObjectPtr<IFileAssociation> findBinFileAssociation(const wchar_t* binFile) override;
  ObjectPtr<IFileAssociation> findSymFileAssociation(const wchar_t* symFile,
                                                     const wchar_t* binaryFile,
                                                     const wchar_t* checksum) override;
  ObjectPtr<IFileAssociation> findSrcFileAssociation(const wchar_t* srcFile,
                                                     const wchar_t* binaryFile,
                                                     const wchar_t* checksum) override;

  using Associations = std::map<FileRequestKey, ObjectPtr<IFileAssociation>>;

 private:
  Associations m_binAssociations;
  Associations m_symAssociations;
  Associations m_srcAssociations;
};

}  // namespace QV_2_9
