// Takes addresses apart and puts them together.

#include "symsrv/url.h"

#include <algorithm>

#include "symsrv/text.h"

namespace symsrv_1_0::internal {
namespace {

bool isUnreserved(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' ||
         c == '.' || c == '_' || c == '~';
}

std::string escaped(std::string_view component) {
  std::string text;
  for (const char c : component) {
    if (isUnreserved(c))
      text += c;
    else
      text += "%" + upperHex(static_cast<unsigned char>(c), 2);
  }
  return text;
}

std::string joined(const std::vector<std::string>& components) {
  std::string text;
  for (const std::string& component : components) text += "/" + escaped(component);
  return text;
}

bool isPlain(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return c > 0x20 && c < 0x7F; });
}

/// Takes "." and ".." out of a path that begins with "/".
std::string withoutDots(std::string_view path) {
  std::string result;
  while (!path.empty()) {
    const std::size_t end = std::min(path.find('/', 1), path.size());
    const std::string_view part = path.substr(0, end);
    path.remove_prefix(end);
    const bool isUp = part == "/..";
    if (isUp)
      result.erase(std::min(result.rfind('/'), result.size()));
    else if (part != "/.")
      result += part;
    if (path.empty() && (isUp || part == "/."))
      result += '/';  // a folder's name
  }
  return result;
}

}  // namespace

std::string Url::origin() const {
  std::string host = toLower(authority);
  const std::string usualPort = isSecure ? ":443" : ":80";
  if (host.ends_with(usualPort))
    host.resize(host.size() - usualPort.size());
  return (isSecure ? "https://" : "http://") + host;
}

std::string Url::below(const std::vector<std::string>& components) const {
  const std::string user = userInfo.empty() ? "" : userInfo + "@";
  return (isSecure ? "https://" : "http://") + user + authority + path + joined(components) + query;
}

std::string Url::shownBelow(const std::vector<std::string>& components) const {
  return (isSecure ? "https://" : "http://") + authority + path + joined(components);
}

bool isOnThisMachine(const Url& url) {
  const std::string host = toLower(url.authority);
  const std::size_t end = host[0] == '[' ? host.find(']') + 1 : host.find(':');
  const std::string name = host.substr(0, end);
  const bool isNumbered = name.find_first_not_of("0123456789.") == std::string::npos;
  return name == "localhost" || name == "[::1]" || (isNumbered && name.starts_with("127."));
}

bool hasScheme(std::string_view text) {
  const std::size_t end = text.find("://");
  return end != std::string_view::npos && end > 0 &&
         std::all_of(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(end), [](char c) {
           return isUnreserved(c) || c == '+';
         });
}

std::optional<Url> parseAddress(std::string_view text) {
  Url url;
  url.isSecure = startsWithIgnoreCase(text, "https://");
  if (!url.isSecure && !startsWithIgnoreCase(text, "http://"))
    return std::nullopt;
  if (!isPlain(text))
    return std::nullopt;
  text.remove_prefix(url.isSecure ? 8 : 7);
  text = text.substr(0, text.find('#'));
  if (const std::size_t query = text.find('?'); query != std::string_view::npos) {
    url.query = text.substr(query);
    text = text.substr(0, query);
  }
  url.path = "/";
  if (const std::size_t path = text.find('/'); path != std::string_view::npos) {
    url.path = text.substr(path);
    text = text.substr(0, path);
  }
  if (const std::size_t user = text.rfind('@'); user != std::string_view::npos) {
    url.userInfo = text.substr(0, user);
    text.remove_prefix(user + 1);
  }
  url.authority = text;
  if (text.empty() || text.front() == ':' || text.find('\\') != std::string_view::npos)
    return std::nullopt;
  return url;
}

std::optional<Url> parseUrl(std::string_view text) {
  std::optional<Url> url = parseAddress(text);
  if (url)
    url->path.erase(url->path.find_last_not_of('/') + 1);
  return url;
}

std::string resolveLocation(const Url& from, std::string_view location) {
  const std::string scheme = from.isSecure ? "https:" : "http:";
  const std::size_t colon = location.find(':');
  if (location.empty() ||
      (colon != std::string_view::npos && colon < location.find_first_of("/?#")))
    return std::string(location);
  if (location.substr(0, 2) == "//")
    return scheme + std::string(location);
  const std::string root = scheme + "//" + from.authority;
  const std::size_t end = std::min(location.find_first_of("?#"), location.size());
  const std::string_view path = location.substr(0, end);
  const std::string rest(location.substr(end));
  if (path.empty())
    return root + from.path + rest;
  if (path[0] == '/')
    return root + withoutDots(path) + rest;
  return root + withoutDots(from.path.substr(0, from.path.rfind('/') + 1) + std::string(path)) +
         rest;
}

std::string escapedAddress(std::string_view address) {
  const std::size_t host = address.find("://");
  const std::size_t path =
      host == std::string_view::npos ? host : address.find_first_of("/?#", host + 3);
  std::string text(address.substr(0, path));
  for (const char c : path == std::string_view::npos ? "" : address.substr(path)) {
    const bool isPlain = (c > 0x20 && c < 0x7F) || c == '\r' || c == '\n';
    text += isPlain ? std::string(1, c) : "%" + upperHex(static_cast<unsigned char>(c), 2);
  }
  return text;
}

std::string shownUrl(std::string_view text) {
  const std::optional<Url> url = parseUrl(text);
  if (!url)
    return hasScheme(text) ? std::string(text.substr(0, text.find("://"))) + "://..."
                           : printable(text);
  return printable(url->shownBelow({}));
}

}  // namespace symsrv_1_0::internal
