#include "PlatformLinux/Netlink/LinkRequest.h"

#include <cstdint>
#include <net/if.h>

#include <linux/if_link.h>
#include <linux/netlink.h>
#include <linux/rtnetlink.h>

#include "Support/FatalError.h"

namespace lanternfold {

namespace {

RequestBuilder linkRequest(std::uint16_t flags) {
  RequestBuilder request(RTM_GETLINK, flags, ifinfomsg{});
  request.addNumber(IFLA_EXT_MASK, RTEXT_FILTER_SKIP_STATS);
  return request;
}

}  // namespace

NetlinkRequest linkSurveyRequest() { return linkRequest(NLM_F_DUMP).finished(); }

NetlinkRequest linkByNameRequest(std::string_view name) {
  if (name.empty() || name.size() >= IFNAMSIZ) {
    fatalError("a link was asked for by a name that no link can have");
  }
  RequestBuilder request = linkRequest(NLM_F_ACK);
  request.addText(IFLA_IFNAME, name);
  return request.finished();
}

}  // namespace lanternfold
