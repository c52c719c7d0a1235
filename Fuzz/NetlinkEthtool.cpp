// A datagram of ethtool's answers through the walk and the decoder of link speeds.
#include <cstddef>
#include <cstdint>

#include "PlatformLinux/Netlink/EthtoolMessage.h"
#include "PlatformLinux/Netlink/NetlinkMessage.h"
#include "Support/FatalError.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  lanternfold::NetlinkMessageWalker walker({data, size});
  while (true) {
    const auto message = walker.next();
    if (!message || !*message) return 0;
    const auto speed = lanternfold::decodeLinkSpeed(**message);
    if (!speed) continue;
    if (speed->interfaceIndex == 0) lanternfold::fatalError("a decoded speed belongs to no link");
    if (speed->bitsPerSecond.value_or(0) % 1'000'000 != 0) {
      lanternfold::fatalError("a decoded speed is no whole number of megabits");
    }
  }
}
