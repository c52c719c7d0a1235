#include "PlatformLinux/System/GenericFamily.h"

#include "PlatformLinux/Netlink/GenericNetlink.h"
#include "PlatformLinux/System/TableDump.h"

namespace lanternfold {

std::optional<std::uint16_t> genericFamilyType(NetlinkSocket& socket, std::string_view familyName) {
  const auto types = dumpTable(socket, genericFamilyRequest(familyName), decodeGenericFamily);
  if (!types || types->empty()) return std::nullopt;
  return types->back();
}

}  // namespace lanternfold
