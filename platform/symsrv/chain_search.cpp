// The directories of a chain, and who takes copies. Its servers are in chain_search_server.cpp.

#include "symsrv/chain_search.h"

#include "paku/text_encoding.h"
#include "symsrv/pdb_identity.h"
#include "symsrv/pointer_file.h"
#include "symsrv/safe_name.h"
#include "symsrv/text.h"
#include "symsrv/verify.h"

namespace symsrv_1_0::internal {
namespace {

constexpr std::string_view kSeparators = "/\\";

bool isSeparator(char c) {
  return kSeparators.find(c) != std::string_view::npos;
}

/// Returns what of `path` lies below `root`. Empty when it does not.
std::string_view below(std::string_view path, std::string_view root) {
  while (!root.empty() && isSeparator(root.back())) root.remove_suffix(1);
  if (root.empty() || path.size() <= root.size() + 1 || path.substr(0, root.size()) != root ||
      !isSeparator(path[root.size()]))
    return {};
  return path.substr(root.size() + 1);
}

bool isRelative(std::string_view path) {
  return !path.empty() && !isSeparator(path[0]) && path.find(':') == std::string_view::npos;
}

/// Returns false when one of the names is not an ordinary one.
bool splitOrdinary(std::string_view path, std::vector<std::string>& names) {
  while (!path.empty()) {
    const std::size_t end = std::min(path.find_first_of(kSeparators), path.size());
    if (!isSafeComponent(path.substr(0, end)))
      return false;
    names.emplace_back(path.substr(0, end));
    path.remove_prefix(std::min(end + 1, path.size()));
  }
  return !names.empty();
}

}  // namespace

ChainSearch::ChainSearch(Downloader& shared, const SearchRequest& request, const Chain& chain)
    : m_shared(shared),
      m_settings(shared.m_settings),
      m_request(request),
      m_chain(chain),
      m_sought(request.sought),
      m_progress(request.progress) {}

void ChainSearch::say(const std::string& where, const std::string& what) const {
  if (m_request.report)
    m_request.report(printable(where) + ": " + printable(what));
}

void ChainSearch::answer(StoreOutcome outcome,
                         const std::string& where,
                         const std::string& what,
                         std::uint64_t bytes) {
  say(where, what);
  m_hasAnswer = true;
  if (m_progress.watcher())
    m_answer = {outcome, printable(where), printable(what), bytes};
}

void ChainSearch::tellWatcher(const StoreName& store) const {
  IStoreWatcher* const watcher = m_progress.watcher();
  if (!watcher)
    return;
  const std::wstring root =
      PAKU_3_1::decode(printable(store.url ? store.url->shownBelow({}) : store.directory));
  const std::wstring place = PAKU_3_1::decode(m_answer.place);
  const std::wstring what = PAKU_3_1::decode(m_answer.what);
  const std::wstring identity = PAKU_3_1::decode(printable(m_sought.identity()));
  const StoreOutcome outcome = m_progress.isCanceled() ? StoreOutcome::kCanceled : m_answer.outcome;
  watcher->onStore({root.c_str(),
                    place.c_str(),
                    identity.c_str(),
                    outcome,
                    what.c_str(),
                    static_cast<std::int64_t>(m_answer.bytes)});
}

std::string ChainSearch::run() {
  for (std::size_t i = 0; i < m_chain.stores.size(); ++i) {
    std::string path = m_chain.stores[i].url ? tryServer(i) : tryDirectory(i);
    if (!path.empty() || m_isUndecided || m_progress.isCanceled())
      return path;
  }
  return {};
}

DirectoryStore ChainSearch::directory(std::size_t index) const {
  const bool takesCopies = index + 1 < m_chain.stores.size() || m_chain.isCache;
  return DirectoryStore(m_chain.stores[index].directory, takesCopies, m_settings);
}

std::vector<DirectoryStore> ChainSearch::storesBefore(std::size_t index) const {
  std::vector<DirectoryStore> stores;
  for (std::size_t i = 0; i < index; ++i) {
    const StoreName& name = m_chain.stores[i];
    const auto isSame = [&](const DirectoryStore& s) { return s.root() == name.directory; };
    if (!name.url && std::none_of(stores.begin(), stores.end(), isSame))
      stores.push_back(directory(i));
  }
  if (stores.empty())
    if (std::optional<DirectoryStore> spare = spareStore())
      stores.push_back(*std::move(spare));
  return stores;
}

std::optional<DirectoryStore> ChainSearch::nearestStore(std::size_t index) const {
  for (const DirectoryStore& store : storesBefore(index))
    if (store.reasonAgainst().empty())
      return store;
  return std::nullopt;
}

std::optional<DirectoryStore> ChainSearch::spareStore() const {
  if (m_settings.defaultStore.empty())
    return std::nullopt;
  return DirectoryStore(m_settings.defaultStore, true, m_settings);
}

/// Before anything is asked or copied, whatever becomes of it then.
void ChainSearch::sweep(const std::vector<DirectoryStore>& stores) const {
  for (const DirectoryStore& store : stores)
    if (store.reasonAgainst().empty())
      m_shared.sweepOnce(store);
}

/// Whatever the number of layouts in which the file may lie there, the store has one answer.
std::string ChainSearch::tryDirectory(std::size_t index) {
  const DirectoryStore store = directory(index);
  m_answer = {};
  m_hasAnswer = false;
  std::string path;
  if (std::string reason = store.reasonAgainst(); !reason.empty()) {
    answer(StoreOutcome::kLeftAlone, store.root(), reason);
  } else {
    for (const Place& place : m_sought.places)
      if (place.inDirectories && path.empty() && !m_isUndecided && !m_progress.isCanceled())
        path = lookIn(index, store, place);
    if (!m_hasAnswer && !m_isUndecided)
      answer(StoreOutcome::kMissing, store.root(), "not there");
  }
  if (!m_isUndecided)
    tellWatcher(m_chain.stores[index]);
  return path;
}

std::string ChainSearch::lookIn(std::size_t index,
                                const DirectoryStore& store,
                                const Place& place) {
  const std::shared_ptr<Folder> folder = store.find(place);
  if (!folder)
    return {};
  std::vector<std::string> names = {place.file};
  if (place.isKeyed)
    names.push_back(compressedName(place.file));
  for (const std::string& name : names) {
    const std::unique_ptr<FileSource> file = folder->read(name, store.links());
    if (!file)
      continue;
    std::string path = tryFile(index, *file, folder->pathOf(name));
    if (!path.empty() || m_progress.isCanceled() || m_isUndecided)
      return path;
  }
  return place.isKeyed ? tryPointer(index, store, *folder) : std::string();
}

std::string ChainSearch::tryFile(std::size_t index, IByteSource& file, const std::string& path) {
  const bool isCompressed = recogniseContainer(file) == Container::kCabinet;
  if (!isCompressed) {
    const std::string reason = mismatch(file, m_sought);
    if (!reason.empty()) {
      answer(StoreOutcome::kMismatch, path, reason, file.size());
      return {};
    }
    answer(StoreOutcome::kFound, path, "found", file.size());
    if (index == 0 || m_sought.isByChecksum())
      return path;
  }
  if (isCompressed)
    if (std::string brought = trySpare(index); !brought.empty() || m_isUndecided)
      return brought;
  if (m_request.isNearOnly) {
    m_isUndecided = true;
    return {};
  }
  const std::vector<DirectoryStore> stores = storesBefore(index);
  sweep(stores);
  Delivery delivery(
      stores, isCompressed ? spareStore() : std::nullopt, m_sought, m_settings, m_progress);
  const DeliveryResult result = delivery.deliver(file);
  if (!result.reason.empty() && isCompressed)
    answer(StoreOutcome::kFailed, path, result.reason, file.size());
  else if (!result.reason.empty())
    say(path, result.reason);
  else if (isCompressed)
    answer(StoreOutcome::kFound, path, "unpacked", file.size());
  // The right file, and nowhere to bring it: it serves where it lies.
  if (result.path.empty() && !isCompressed && !m_progress.isCanceled())
    return path;
  return result.path;
}

/// Looks where another search has brought the file when no store before `index` could take it.
std::string ChainSearch::trySpare(std::size_t index) {
  const Place* place = m_sought.cachePlace();
  const std::optional<DirectoryStore> spare = spareStore();
  if (!place || !spare || !spare->reasonAgainst().empty())
    return {};
  for (std::size_t i = 0; i < index; ++i)
    if (m_chain.stores[i].directory == spare->root())
      return {};  // looked at already
  const std::shared_ptr<Folder> folder = spare->find(*place);
  const std::unique_ptr<FileSource> file =
      folder ? folder->read(place->file, spare->links()) : nullptr;
  if (!file || !mismatch(*file, m_sought).empty())
    return {};
  return tryFile(index, *file, folder->pathOf(place->file));
}

/// Returns the path of the file when an earlier search has brought it.
std::string ChainSearch::wasBrought(const std::vector<DirectoryStore>& stores) {
  const Place* place = m_sought.cachePlace();
  for (const DirectoryStore& store : stores) {
    const std::shared_ptr<Folder> folder =
        place && store.reasonAgainst().empty() ? store.find(*place) : nullptr;
    const std::unique_ptr<FileSource> file =
        folder ? folder->read(place->file, store.links()) : nullptr;
    if (file && mismatch(*file, m_sought).empty()) {
      answer(StoreOutcome::kFound, folder->pathOf(place->file), "found", file->size());
      return folder->pathOf(place->file);
    }
  }
  return {};
}

std::string ChainSearch::tryPointer(std::size_t index,
                                    const DirectoryStore& store,
                                    const Folder& folder) {
  const std::unique_ptr<FileSource> file = folder.read("file.ptr", store.links());
  if (!file || file->size() > kMaxPointerSize)
    return {};
  std::string content(static_cast<std::size_t>(file->size()), '\0');
  if (!file->read(0, content.data(), content.size()))
    return {};
  const PointerFile pointer = parsePointerFile(content);
  if (pointer.kind != PointerFile::Kind::kPath) {
    answer(StoreOutcome::kFailed, folder.pathOf("file.ptr"), "no file: " + pointer.text);
    return {};
  }
  std::string path;
  const std::unique_ptr<FileSource> pointed = openPointed(pointer.text, store.root(), path);
  if (!pointed) {
    answer(StoreOutcome::kFailed,
           folder.pathOf("file.ptr"),
           "points to nothing in a store: " + pointer.text);
    return {};
  }
  return tryFile(index, *pointed, path);
}

/// Follows a pointer into its own store, or into a directory that the user named; nowhere else:
/// opening a share of a stranger would tell him who asks.
std::unique_ptr<FileSource> ChainSearch::openPointed(const std::string& text,
                                                     const std::string& storeRoot,
                                                     std::string& path) {
  std::string root = storeRoot;
  std::string_view rest = isRelative(text) ? std::string_view(text) : below(text, storeRoot);
  for (const Chain& chain : m_request.chains)
    for (const StoreName& store : chain.stores)
      if (rest.empty() && !store.url && isAbsolutePath(store.directory)) {
        rest = below(text, store.directory);
        root = store.directory;
      }
  std::vector<std::string> names;
  if (!splitOrdinary(rest, names))
    return nullptr;
  const std::string name = names.back();
  names.pop_back();
  const auto folder = Folder::open(root, names, Folder::Missing::kRefuse, Links::kRefuse);
  if (!folder)
    return nullptr;
  path = folder->pathOf(name);
  return folder->read(name, Links::kRefuse);
}

}  // namespace symsrv_1_0::internal
