#include "PlatformLinux/System/GenericFamily.h"

#include <utility>

#include "PlatformLinux/System/TableDump.h"

namespace lanternfold {

std::optional<GenericFamilyMessage> genericFamily(NetlinkSocket& socket,
                                                  std::string_view familyName) {
  auto families = dumpTable(socket, genericFamilyRequest(familyName), decodeGenericFamily);
  if (!families || families->empty()) return std::nullopt;
  return std::move(families->back());
}

std::optional<std::uint16_t> genericFamilyType(NetlinkSocket& socket, std::string_view familyName) {
  const auto family = genericFamily(socket, familyName);
  return family ? std::optional(family->messageType) : std::nullopt;
}

}  // namespace lanternfold
