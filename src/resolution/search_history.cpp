// See search_history.h.

#include "resolution/search_history.h"

#include "quiver/search_dirs.h"

namespace QV_2_9 {
namespace {

std::wstring textOf(const wchar_t* text) {
  return text ? text : L"";
}

FileRequestKey requestKey(const wchar_t* name,
                          const wchar_t* binary = nullptr,
                          const wchar_t* checksum = nullptr) {
  return {textOf(name), textOf(binary), textOf(checksum)};
}

ObjectPtr<IFileAssociation> addTo(SearchHistory::Associations& associations,
                                  const FileRequestKey& key,
                                  const wchar_t* path) {
  const ObjectPtr<IFileAssociation> association(new FileAssociation(path));
  associations[key] = association;
  return association;
}

ObjectPtr<IFileAssociation> findIn(const SearchHistory::Associations& associations,
                                   const FileRequestKey& key) {
  const auto entry = associations.find(key);
  return entry == associations.end() ? nullptr : entry->second;
}

}  // namespace

ObjectPtr<ISearchHistory> ISearchHistory::create() {
  return new SearchHistory;
}

ObjectPtr<IFileAssociation> SearchHistory::addBinFileAssociation(const wchar_t* binFile,
                                                                 const wchar_t* path) {
  return addTo(m_binAssociations, requestKey(binFile), path);
}

ObjectPtr<IFileAssociation> SearchHistory::addSymFileAssociation(const wchar_t* symFile,
                                                                 const wchar_t* binaryFile,
                                                                 const wchar_t* checksum,
                                                                 const wchar_t* path) {
  return addTo(m_symAssociations, requestKey(symFile, binaryFile, checksum), path);
}

ObjectPtr<IFileAssociation> SearchHistory::addSrcFileAssociation(const wchar_t* srcFile,
                                                                 const wchar_t* binaryFile,
                                                                 const wchar_t* checksum,
                                                                 const wchar_t* path) {
  return addTo(m_srcAssociations, requestKey(srcFile, binaryFile, checksum), path);
}

void SearchHistory::clearAssociations(std::int32_t category) {
  const bool all = category == scAllFiles;
  if (all || category == scBinaryFiles)
    m_binAssociations.clear();
  if (all || category == scSymbolFiles)
    m_symAssociations.clear();
  if (all || category == scSourceFiles)
    m_srcAssociations.clear();
}

ObjectPtr<IFileAssociation> SearchHistory::findBinFileAssociation(const wchar_t* binFile) {
  return findIn(m_binAssociations, requestKey(binFile));
}

ObjectPtr<IFileAssociation> SearchHistory::findSymFileAssociation(const wchar_t* symFile,
                                                                  const wchar_t* binaryFile,
                                                                  const wchar_t* checksum) {
  return findIn(m_symAssociations, requestKey(symFile, binaryFile, checksum));
}

ObjectPtr<IFileAssociation> SearchHistory::findSrcFileAssociation(const wchar_t* srcFile,
                                                                  const wchar_t* binaryFile,
                                                                  const wchar_t* checksum) {
  return findIn(m_srcAssociations, requestKey(srcFile, binaryFile, checksum));
}

}  // namespace QV_2_9
