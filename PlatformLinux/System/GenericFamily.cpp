#include "PlatformLinux/System/GenericFamily.h"

#include <cerrno>

#include "PlatformLinux/Netlink/GenericNetlink.h"
#include "PlatformLinux/System/TableDump.h"

namespace lanternfold {

std::expected<std::optional<std::uint16_t>, NetworkKernelError> findGenericFamily(
    NetlinkSocket& socket, std::string_view familyName) {
  const auto types = dumpTable(socket, genericFamilyRequest(familyName), decodeGenericFamily);
  if (!types) {
    if (socket.lastErrorNumber() == ENOENT) return std::nullopt;
    return std::unexpected(types.error());
  }
  if (types->empty()) return std::unexpected(NetworkKernelError::malformed);
  return types->back();
}

std::optional<std::uint16_t> genericFamilyType(NetlinkSocket& socket, std::string_view familyName) {
  return findGenericFamily(socket, familyName).value_or(std::nullopt);
}

}  // namespace lanternfold
