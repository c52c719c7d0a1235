#include "PlatformLinux/Netlink/DumpRequest.h"

#include <linux/if_link.h>
#include <linux/netlink.h>
#include <linux/rtnetlink.h>

namespace lanternfold {

namespace {

template <typename Body>
NetlinkRequest dumpRequest(std::uint16_t type, const Body& body) {
  return RequestBuilder(type, NLM_F_DUMP, body).finished();
}

}  // namespace

// No extension mask: RTEXT_FILTER_SKIP_STATS would take the counters away, and the lists of virtual
// functions that the other bits ask for make messages many times as long.
NetlinkRequest linkDumpRequest() { return dumpRequest(RTM_GETLINK, ifinfomsg{}); }

NetlinkRequest addressDumpRequest() { return dumpRequest(RTM_GETADDR, ifaddrmsg{}); }

NetlinkRequest routeDumpRequest(std::uint8_t family) {
  rtmsg body{};
  body.rtm_family = family;
  body.rtm_table = RT_TABLE_MAIN;
  return dumpRequest(RTM_GETROUTE, body);
}

NetlinkRequest statisticsDumpRequest() {
  if_stats_msg body{};
  body.filter_mask = IFLA_STATS_FILTER_BIT(IFLA_STATS_LINK_64);
  return dumpRequest(RTM_GETSTATS, body);
}

}  // namespace lanternfold
