// From the matches of an index to files: what the index does not know is looked up on disk, and
// what it knows is looked at once more.

#include <algorithm>
#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <utility>

#include "paku/directory_entries_posix.h"
#include "paku/native_path_posix.h"
#include "paku/tail_matches_posix.h"
#include "paku/text_encoding.h"
#include "paku/tree_index.h"
#include "paku/tree_registry_posix.h"

namespace PAKU_3_1::internal {
namespace {

std::string joined(const std::string& path, const std::string& component) {
  return path.empty() ? component : path + '/' + component;
}

FileIdentity identityOf(const struct stat& status) {
  return {status.st_dev, status.st_ino};
}

/// A searched directory, by its path.
class Place final {
 public:
  Place(const std::string& path, const struct stat& status)
      : m_path(path), m_identity(identityOf(status)) {}

  const FileIdentity& identity() const { return m_identity; }

  /// Returns nothing when another directory bears the path by now.
  FileDescriptor open() const {
    FileDescriptor fd(::open(m_path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK));
    struct stat status {};
    const bool isIt = fd && fstat(fd.get(), &status) == 0 && identityOf(status) == m_identity;
    return isIt ? std::move(fd) : FileDescriptor();
  }

  bool hasFile(const std::string& below) const {
    const std::string path = m_path + '/' + below;
    struct stat status {};
    if (path.size() < PATH_MAX)
      return stat(path.c_str(), &status) == 0 && !S_ISDIR(status.st_mode);
    const FileDescriptor fd = open();
    return fd && kindBelow(fd.get(), below) == EntryKind::kFile;
  }

 private:
  const std::string& m_path;
  const FileIdentity m_identity;
};

/// Reports the matches of one tail.
class Report final {
 public:
  Report(const Place& place, const FoundBelow& found, std::span<const NameIndex::Name> components)
      : m_place(place), m_found(found), m_components(components) {}

  bool exact(const TailMatch& match) const {
    if (!match.isExact)
      return true;
    std::string path = match.path();
    for (std::size_t i = match.unknownFrom; i < m_components.size(); ++i) {
      if (m_components[i].bytes.empty())
        return true;
      path = joined(path, m_components[i].bytes);
    }
    return report(path);
  }

  bool folded(const TailMatch& match) const {
    if (match.unknownFrom == m_components.size())
      return match.isExact || report(match.path());
    const FileDescriptor root = m_place.open();
    if (!root)
      return true;
    std::vector<std::string> paths = {match.path()};
    for (std::size_t i = match.unknownFrom; i < m_components.size(); ++i) {
      std::vector<std::string> longer;
      for (const std::string& path : paths)
        for (const std::string& entry : entriesCalled(root.get(), path, m_components[i].bytes))
          longer.push_back(joined(path, entry));
      paths = std::move(longer);
    }
    return std::ranges::all_of(paths, [&](const std::string& path) { return report(path); });
  }

 private:
  bool report(const std::string& path) const {
    return !m_place.hasFile(path) || m_found(decode(path));
  }

  const Place& m_place;
  const FoundBelow& m_found;
  const std::span<const NameIndex::Name> m_components;
};

}  // namespace

struct TreeIndex::State {
  TailSource source;
  std::optional<SoughtTails> tails;
};

TreeIndex::TreeIndex(TailSource tails)
    : m_state(std::make_unique<State>(State{std::move(tails), std::nullopt})) {}

TreeIndex::~TreeIndex() = default;

TreeIndex::Answer TreeIndex::search(const std::wstring& directory,
                                    int depth,
                                    const FoundBelow& found) {
  std::string path;
  struct stat status {};
  if (!nativePath(directory, path) || stat(path.c_str(), &status) != 0 || !S_ISDIR(status.st_mode))
    return Answer::kAll;  // a walk would find nothing either
  const Place place(path, status);
  if (!m_state->tails)
    m_state->tails.emplace(m_state->source());
  const auto matches = TreeRegistry::instance().matches(
      place.identity(), depth, *m_state->tails, [&] { return place.open(); });
  if (!matches)
    return Answer::kUnknown;
  for (std::size_t i = 0; i < matches->size(); ++i) {
    const std::vector<TailMatch>& ofTail = (*matches)[i];
    if (ofTail.empty())
      continue;
    const Report report(place, found, m_state->tails->components(i));
    if (!std::ranges::all_of(ofTail, [&](const TailMatch& match) { return report.exact(match); }) ||
        !std::ranges::all_of(ofTail, [&](const TailMatch& match) { return report.folded(match); }))
      return Answer::kEnded;
  }
  return Answer::kAll;
}

}  // namespace PAKU_3_1::internal
