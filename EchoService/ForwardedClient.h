// Behind a reverse proxy: whose request it is.
//
// Read by: `EchoResponder`.
#pragma once

#include <expected>
#include <span>

#include "EchoService/HttpRequest.h"
#include "EchoService/IpNetwork.h"

namespace lanternfold {

/// `peer` itself unless it lies in a trusted network. Then the last address of X-Forwarded-For that
/// does not; its first one when all do, and the peer when there is none. An address may have a port
/// behind it. Error: the address that counts cannot be read, so whose request it is is unknown.
[[nodiscard]] std::expected<IpAddress, HttpRequestError> forwardedClient(
    const IpAddress& peer, std::span<const HttpHeaderField> fields,
    std::span<const IpNetwork> trusted);

}  // namespace lanternfold
