// Places in directories.

#include "symsrv/directory_store.h"

namespace symsrv_1_0::internal {
namespace {

const char* const kNotes = ".misses";

}  // namespace

std::string compressedName(const std::string& name) {
  std::size_t last = name.size() - 1;
  while (last > 0 && (static_cast<unsigned char>(name[last]) & 0xC0) == 0x80) --last;
  return name.substr(0, last) + "_";
}

DirectoryStore::DirectoryStore(std::string root, bool takesCopies, const Settings& settings)
    : m_root(std::move(root)),
      m_links(takesCopies ? Links::kRefuse : Links::kFollow),
      m_isDefault(m_root == settings.defaultStore) {}

std::string DirectoryStore::reasonAgainst() const {
  if (!isAbsolutePath(m_root))
    return "not an absolute path";
  return m_isDefault ? reasonNotPrivate(m_root) : std::string();
}

Folder::Access DirectoryStore::access() const {
  return m_isDefault ? Folder::Access::kPrivate : Folder::Access::kUsual;
}

bool DirectoryStore::hasTwoTiers() const {
  const auto root = Folder::open(m_root, {}, Folder::Missing::kRefuse, m_links);
  return root && root->read("index2.txt", m_links);
}

std::shared_ptr<Folder> DirectoryStore::find(const Place& place) const {
  return Folder::open(m_root, place.folderNames(hasTwoTiers()), Folder::Missing::kRefuse, m_links);
}

std::shared_ptr<Folder> DirectoryStore::make(const Place& place) const {
  return Folder::open(
      m_root, place.folderNames(hasTwoTiers()), Folder::Missing::kMake, Links::kRefuse, access());
}

std::shared_ptr<Folder> DirectoryStore::notes(Folder::Missing missing) const {
  return Folder::open(m_root, {kNotes}, missing, Links::kRefuse, access());
}

void DirectoryStore::removeEmpty(const Place& place) const {
  Folder::removeEmpty(m_root, place.folderNames(hasTwoTiers()));
}

}  // namespace symsrv_1_0::internal
