// The request parser: bytes in, a request or an error out. Strict where being lenient lets a proxy
// and this service see two different requests (RFC 9112, section 11).
//
// Fed by: the connections. Read by: nobody else; it holds nothing.
#pragma once

#include <cstddef>
#include <expected>
#include <optional>
#include <string_view>

#include "EchoService/HttpRequest.h"

namespace lanternfold {

inline constexpr std::size_t longestHttpRequestBytes = 8192;
inline constexpr std::size_t longestHttpRequestLineBytes = 4096;
inline constexpr std::size_t mostHttpHeaderFields = 64;

struct ParsedHttpRequest {
  HttpRequest request;
  std::size_t consumedBytes;  ///< at least one; what stands behind belongs to the next request
};

/// The first request in `bytes`; none while more bytes are needed, which never is the case with
/// `longestHttpRequestBytes` of them. What it says of a beginning does not depend on what follows.
/// One empty line before the request is skipped. Requests with a body are errors.
[[nodiscard]] std::expected<std::optional<ParsedHttpRequest>, HttpRequestError> parseHttpRequest(
    std::string_view bytes);

}  // namespace lanternfold
