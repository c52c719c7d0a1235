#include "PlatformLinux/System/GenericFamily.h"

#include <cerrno>
#include <utility>

#include "PlatformLinux/System/TableDump.h"

namespace lanternfold {

std::expected<std::optional<GenericFamilyMessage>, NetworkKernelError> findGenericFamily(
    NetlinkSocket& socket, std::string_view familyName) {
  auto families = dumpTable(socket, genericFamilyRequest(familyName), decodeGenericFamily);
  if (!families) {
    if (socket.lastErrorNumber() == ENOENT) return std::nullopt;
    return std::unexpected(families.error());
  }
  if (families->empty()) return std::unexpected(NetworkKernelError::malformed);
  return std::move(families->back());
}

std::optional<std::uint16_t> genericFamilyType(NetlinkSocket& socket, std::string_view familyName) {
  const auto family = findGenericFamily(socket, familyName);
  return family && *family ? std::optional((*family)->messageType) : std::nullopt;
}

}  // namespace lanternfold
