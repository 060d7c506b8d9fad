// Reads symbol-server elements.

#include "symsrv/chain.h"

#include <algorithm>

#include "symsrv/text.h"

namespace symsrv_1_0::internal {
namespace {

constexpr std::size_t kMaxStores = 10;
constexpr std::string_view kBuiltIn = "symsrv.dll";

std::vector<std::string_view> split(std::string_view text) {
  std::vector<std::string_view> parts;
  for (std::size_t star = text.find('*'); star != std::string_view::npos; star = text.find('*')) {
    parts.push_back(trimmed(text.substr(0, star)));
    text.remove_prefix(star + 1);
  }
  parts.push_back(trimmed(text));
  return parts;
}

/// A symbol path that ends in a semicolon leaves it with its last element.
std::string_view withoutSemicolons(std::string_view element) {
  element = trimmed(element);
  while (element.ends_with(';')) element = trimmed(element.substr(0, element.size() - 1));
  return element;
}

/// Returns the reason when the store is refused.
std::string readStore(std::string_view text, const std::string& defaultStore, StoreName& store) {
  if (text.empty() && defaultStore.empty())
    return "there is no default store";
  if (!hasScheme(text)) {
    store.directory = text.empty() ? defaultStore : std::string(text);
    return {};
  }
  store.url = parseUrl(text);
  return store.url ? "" : "unsupported address \"" + shownUrl(text) + "\"";
}

ParsedElement refused(std::string reason) {
  return {std::nullopt, std::move(reason)};
}

ParsedElement readStores(const std::vector<std::string_view>& parts,
                         std::size_t first,
                         const std::string& defaultStore) {
  if (parts.size() - first > kMaxStores)
    return refused("more than " + std::to_string(kMaxStores) + " stores");
  Chain chain;
  for (std::size_t i = first; i < std::max(parts.size(), first + 1); ++i) {
    StoreName store;
    const std::string_view text = i < parts.size() ? parts[i] : std::string_view();
    if (std::string reason = readStore(text, defaultStore, store); !reason.empty())
      return refused(std::move(reason));
    chain.stores.push_back(std::move(store));
  }
  return {std::move(chain), {}};
}

ParsedElement readCache(const std::vector<std::string_view>& parts,
                        const std::string& defaultStore) {
  ParsedElement element = readStores(parts, 1, defaultStore);
  if (!element.chain)
    return element;
  if (element.chain->stores.size() != 1 || element.chain->stores[0].url)
    return refused("a cache is one directory");
  element.chain->isCache = true;
  return element;
}

}  // namespace

ParsedElement parseElement(std::string_view element, const std::string& defaultStore) {
  const std::string_view text = withoutSemicolons(element);
  const std::vector<std::string_view> parts = split(text);
  if (parts.size() < 2)
    return refused("no symbol server \"" + printable(text) + "\"");
  if (equalIgnoreCase(parts[0], "srv"))
    return readStores(parts, 1, defaultStore);
  if (equalIgnoreCase(parts[0], "cache"))
    return readCache(parts, defaultStore);
  if (!equalIgnoreCase(parts[0], "symsrv"))
    return refused("unknown kind of symbol server \"" + printable(parts[0]) + "\"");
  if (!equalIgnoreCase(parts[1], kBuiltIn))
    return refused("unsupported symbol-server library \"" + printable(parts[1]) + "\"");
  return readStores(parts, 2, defaultStore);
}

std::string ChainList::add(std::string_view element, const std::string& defaultStore) {
  ParsedElement parsed = parseElement(element, defaultStore);
  if (!parsed.chain)
    return parsed.refusal;
  if (parsed.chain->isCache) {
    m_cache = parsed.chain->stores[0];
    m_chains.push_back(*std::move(parsed.chain));
    return {};
  }
  std::vector<StoreName>& stores = parsed.chain->stores;
  if (m_cache)
    stores.insert(stores.begin(), *m_cache);
  else if (stores.front().url && !defaultStore.empty())
    stores.insert(stores.begin(), StoreName{defaultStore, std::nullopt});
  m_chains.push_back(*std::move(parsed.chain));
  return {};
}

void ChainList::clear() {
  m_chains.clear();
  m_cache.reset();
}

}  // namespace symsrv_1_0::internal
