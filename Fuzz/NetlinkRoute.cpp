// A datagram of route messages, as a dump brings it, through the walk and the decoder.
#include <cstddef>
#include <cstdint>

#include "PlatformLinux/Netlink/NetlinkMessage.h"
#include "PlatformLinux/Netlink/RouteMessage.h"
#include "Support/FatalError.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  lanternfold::NetlinkMessageWalker walker({data, size});
  while (true) {
    const auto message = walker.next();
    if (!message || !*message) return 0;
    static_cast<void>(lanternfold::decodeControl(**message));
    const auto route = lanternfold::decodeRouteMessage(**message);
    if (!route) continue;
    if ((std::holds_alternative<lanternfold::IPv4Bytes>(route->destination) &&
         route->destinationLength > 32) ||
        (std::holds_alternative<lanternfold::IPv6Bytes>(route->destination) &&
         route->destinationLength > 128)) {
      lanternfold::fatalError("a decoded destination is longer than its address");
    }
  }
}
