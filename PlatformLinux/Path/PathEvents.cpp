#include "PlatformLinux/Path/PathEvents.h"

#include <algorithm>

#include <linux/rtnetlink.h>

namespace lanternfold {

namespace {

bool isLinkNews(const NetlinkMessage& message, const NetworkSnapshot& known) {
  const auto link = decodeLinkMessage(message);
  if (!link) return true;
  if (!link->describesLink()) return false;
  const auto found = known.links.find(link->index);
  return link->isRemoval || found == known.links.end() ||
         found->second.link != withoutCounters(*link);
}

bool isAddressNews(const NetlinkMessage& message, const NetworkSnapshot& known) {
  const auto address = decodeAddressMessage(message);
  if (!address || address->isRemoval) return true;
  const auto [first, last] = known.addresses.equal_range(address->interfaceIndex);
  return std::none_of(first, last, [&](const auto& entry) { return entry.second == *address; });
}

bool isRouteNews(const NetlinkMessage& message, const NetworkSnapshot& known) {
  const auto route = decodeRouteMessage(message);
  if (!route) return true;
  if (!route->isDefault()) return false;
  const auto& routes = known.defaultRoutes;
  return route->isRemoval || std::find(routes.begin(), routes.end(), *route) == routes.end();
}

}  // namespace

bool isNews(const NetlinkMessage& message, const NetworkSnapshot& known) {
  switch (message.type) {
    case RTM_NEWLINK:
    case RTM_DELLINK:
      return isLinkNews(message, known);
    case RTM_NEWADDR:
    case RTM_DELADDR:
      return isAddressNews(message, known);
    case RTM_NEWROUTE:
    case RTM_DELROUTE:
      return isRouteNews(message, known);
    default:
      return false;
  }
}

}  // namespace lanternfold
