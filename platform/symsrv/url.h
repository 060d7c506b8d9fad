// Addresses of symbol servers.

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace symsrv_1_0::internal {

/// An address: http or https, nothing else.
struct Url {
  bool isSecure = false;
  std::string userInfo;   ///< "user:password", as written; empty when there is none.
  std::string authority;  ///< Host and port, IPv6 hosts in brackets.
  std::string path;       ///< Begins with "/"; of a root: empty, or without "/" at its end.
  std::string query;      ///< Begins with "?" or is empty.

  /// Returns scheme, host and port: what fails or works as one.
  std::string origin() const;

  /// Returns the address of a file below this one. Each component is escaped; a query stays last.
  std::string below(const std::vector<std::string>& components) const;

  /// Returns the same for people and files: without credentials and without the query.
  std::string shownBelow(const std::vector<std::string>& components) const;
};

/// Returns true when nobody is on the way to the server but this machine.
bool isOnThisMachine(const Url& url);

/// Returns true when the text begins with a scheme, such as "file://".
bool hasScheme(std::string_view text);

/// Reads the address of a root, below which files lie.
std::optional<Url> parseUrl(std::string_view text);

/// Reads the address of one file. Its end stays as it is: a "/" more is another address.
std::optional<Url> parseAddress(std::string_view text);

/// Returns the address that a redirect from `from` leads to: `location` may be relative. An address
/// of another scheme comes back as it is.
std::string resolveLocation(const Url& from, std::string_view location);

/// Returns the address with what is neither printable nor ASCII escaped behind the host. Ends of
/// lines stay: nobody means them.
std::string escapedAddress(std::string_view address);

/// Returns an address without credentials and query, fit for messages. Takes any text.
std::string shownUrl(std::string_view text);

}  // namespace symsrv_1_0::internal
