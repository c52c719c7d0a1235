// A datagram of statistics messages, as a dump brings it, through the walk and the decoder.
#include <cstddef>
#include <cstdint>

#include "PlatformLinux/Netlink/NetlinkMessage.h"
#include "PlatformLinux/Netlink/StatisticsMessage.h"
#include "Support/FatalError.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  lanternfold::NetlinkMessageWalker walker({data, size});
  while (true) {
    const auto message = walker.next();
    if (!message || !*message) return 0;
    static_cast<void>(lanternfold::decodeControl(**message));
    const auto statistics = lanternfold::decodeStatisticsMessage(**message);
    if (statistics && statistics->interfaceIndex == 0) {
      lanternfold::fatalError("decoded statistics belong to no link");
    }
  }
}
