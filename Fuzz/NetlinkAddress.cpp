// A datagram of address messages, as a dump brings it, through the walk and the decoder.
#include <cstddef>
#include <cstdint>

#include "PlatformLinux/Netlink/AddressMessage.h"
#include "PlatformLinux/Netlink/NetlinkMessage.h"
#include "Support/FatalError.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  lanternfold::NetlinkMessageWalker walker({data, size});
  while (true) {
    const auto message = walker.next();
    if (!message || !*message) return 0;
    static_cast<void>(lanternfold::decodeControl(**message));
    const auto address = lanternfold::decodeAddressMessage(**message);
    if (!address) continue;
    if (address->interfaceIndex == 0) lanternfold::fatalError("a decoded address has no link");
    const bool isIPv4 =
        address->address && std::holds_alternative<lanternfold::IPv4Bytes>(*address->address);
    const bool isIPv6 =
        address->address && std::holds_alternative<lanternfold::IPv6Bytes>(*address->address);
    if ((isIPv4 && address->prefixLength > 32) || (isIPv6 && address->prefixLength > 128)) {
      lanternfold::fatalError("a decoded prefix is longer than its address");
    }
    if ((isIPv4 || isIPv6) != address->netmask.has_value()) {
      lanternfold::fatalError("a decoded address and its mask do not go together");
    }
  }
}
