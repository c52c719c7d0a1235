// The fields of a request's header: each alone, and what they may say together.
//
// Read by: the request parser.
#pragma once

#include <expected>
#include <span>
#include <string_view>
#include <vector>

#include "EchoService/HttpRequest.h"
#include "EchoService/HttpRequestLine.h"

namespace lanternfold {

/// A line of the header without its end.
[[nodiscard]] std::expected<HttpHeaderField, HttpRequestError> parseHttpHeaderField(
    std::string_view line);

/// One host (none will do for HTTP/1.0), no body and no expectation that cannot be met. Errors:
/// 400; 411 for a body in chunks, 413 for one of a known length, 501 for another transfer coding,
/// 417.
[[nodiscard]] std::expected<void, HttpRequestError> checkHttpHeader(
    std::span<const HttpHeaderField> fields, HttpVersion version);

/// HTTP/1.1 goes on unless it says "close", HTTP/1.0 ends unless it says "keep-alive".
[[nodiscard]] bool wantsKeepAlive(std::span<const HttpHeaderField> fields, HttpVersion version);

/// The parts of a list in the fields of that (lower-case) name, in their order, without the white
/// space around them; empty ones too.
[[nodiscard]] std::vector<std::string_view> httpListItems(std::span<const HttpHeaderField> fields,
                                                          std::string_view name);

}  // namespace lanternfold
