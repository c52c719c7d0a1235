// A datagram of generic netlink's answers through the walk, the family look-up and the decoder of
// Wi-Fi interfaces.
#include <cstddef>
#include <cstdint>

#include "PlatformLinux/Netlink/GenericNetlink.h"
#include "PlatformLinux/Netlink/NetlinkMessage.h"
#include "PlatformLinux/Netlink/WirelessInterfaceMessage.h"
#include "Support/FatalError.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  lanternfold::NetlinkMessageWalker walker({data, size});
  while (true) {
    const auto message = walker.next();
    if (!message || !*message) return 0;
    const auto family = lanternfold::decodeGenericFamily(**message);
    const auto interface = lanternfold::decodeWirelessInterface(**message);
    if ((!family && family.error().subject.empty()) ||
        (!interface && interface.error().subject.empty())) {
      lanternfold::fatalError("an answer was refused without saying what is wrong with it");
    }
  }
}
