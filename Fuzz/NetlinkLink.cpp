// A datagram of link messages, as a dump brings it, through the walk and the decoder.
#include <cstddef>
#include <cstdint>

#include "PlatformLinux/Netlink/LinkMessage.h"
#include "PlatformLinux/Netlink/NetlinkMessage.h"
#include "Support/FatalError.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  lanternfold::NetlinkMessageWalker walker({data, size});
  while (true) {
    const auto message = walker.next();
    if (!message || !*message) return 0;
    static_cast<void>(lanternfold::decodeControl(**message));
    const auto link = lanternfold::decodeLinkMessage(**message);
    if (!link) continue;
    if (link->name.empty() || link->name.size() > 15 || link->name.contains('\0')) {
      lanternfold::fatalError("a decoded link has a name that no link can have");
    }
    if (link->index == 0) lanternfold::fatalError("a decoded link has no index");
    if (link->address.size() > 32)
      lanternfold::fatalError("a decoded hardware address is too long");
  }
}
