// The first line of a request: method, target and version.
//
// Read by: the request parser.
#pragma once

#include <expected>
#include <optional>
#include <string>
#include <string_view>

#include "EchoService/HttpRequest.h"

namespace lanternfold {

/// Later versions of HTTP/1 are answered as 1.1.
enum class HttpVersion { http10, http11 };

struct HttpRequestLine {
  std::string method;
  std::string path;
  std::optional<std::string> query;
  HttpVersion version = HttpVersion::http11;
};

/// Of a target with a scheme and a host, as proxies are sent it, path and query count. 505 for
/// another version than HTTP/1, else 400.
[[nodiscard]] std::expected<HttpRequestLine, HttpRequestError> parseHttpRequestLine(
    std::string_view line);

/// Whether the text is one or more of the characters of RFC 9110's tokens.
[[nodiscard]] bool isHttpToken(std::string_view text);

}  // namespace lanternfold
