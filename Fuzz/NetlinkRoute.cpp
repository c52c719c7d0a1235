// A datagram of route messages, as a dump brings it, through the walk and the decoder.
#include <cstddef>
#include <cstdint>

#include "PlatformLinux/Netlink/NetlinkMessage.h"
#include "PlatformLinux/Netlink/RouteMessage.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  lanternfold::NetlinkMessageWalker walker({data, size});
  while (true) {
    const auto message = walker.next();
    if (!message || !*message) return 0;
    static_cast<void>(lanternfold::decodeControl(**message));
    static_cast<void>(lanternfold::decodeRouteMessage(**message));
  }
}
