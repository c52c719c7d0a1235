// A URL of http or https, taken apart and judged before anything is asked of the network.
//
// Made from: the text of a request or of a redirect. Read by: the proxy rules and the exchange.
#pragma once

#include <cstddef>
#include <cstdint>
#include <expected>
#include <string>
#include <string_view>

#include "Platform/UrlError.h"
#include "Platform/UrlSession.h"

namespace lanternfold {

/// Longer texts are no URL: nobody types one, and a server that sends one wants something else.
inline constexpr std::size_t longestUrlBytes = 8 * 1024;

struct HttpUrl {
  std::string text;  ///< normalised
  bool isSecure = false;
  std::string host;  ///< a name or an address, without the brackets and the zone of an IPv6 one
  std::uint16_t port = 0;
  /// Of a host that is an address; `any` for a name.
  UrlAddressFamily literalFamily = UrlAddressFamily::any;
  friend bool operator==(const HttpUrl&, const HttpUrl&) = default;
};

/// Whether a name and a password in the text are sent. Those of a redirect are the server's, not
/// the user's.
enum class UrlCredentials { kept, dropped };

/// `badUrl` for what is no URL, too long or without a host; `unsupportedUrl` for another scheme.
/// Pure.
[[nodiscard]] std::expected<HttpUrl, UrlErrorCode> parseHttpUrl(std::string_view text,
                                                                UrlCredentials credentials);

}  // namespace lanternfold
