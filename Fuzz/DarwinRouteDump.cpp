// The other kernel's routing tables: any bytes decode, in both paddings, to an error or to no more
// routes than there is room for headers, each with a gateway.
#include <cstddef>
#include <cstdint>
#include <span>

#include "PlatformDarwin/RouteDumpDecoder.h"
#include "Support/FatalError.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using lanternfold::RouteFamily;
  constexpr std::size_t headerSize = 92;
  for (const RouteFamily family : {RouteFamily::ipv4, RouteFamily::ipv6}) {
    const auto routes =
        lanternfold::darwin::decodeRouteDump(std::as_bytes(std::span(data, size)), family);
    if (!routes) continue;
    if (routes->size() > size / headerSize) {
      lanternfold::fatalError("more routes were decoded than the dump has room for");
    }
    for (const lanternfold::RouteRecord& route : *routes) {
      if (!route.gateway) lanternfold::fatalError("a decoded route has no gateway");
    }
  }
  return 0;
}
