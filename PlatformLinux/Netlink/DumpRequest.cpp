#include "PlatformLinux/Netlink/DumpRequest.h"

#include <cstring>

#include <linux/if_link.h>
#include <linux/netlink.h>
#include <linux/rtnetlink.h>

namespace lanternfold {

namespace {

template <typename Body>
NetlinkRequest dumpRequest(std::uint16_t type, const Body& body) {
  static_assert(sizeof(Body) % NLMSG_ALIGNTO == 0);
  const nlmsghdr header{.nlmsg_len = sizeof(nlmsghdr) + sizeof(Body),
                        .nlmsg_type = type,
                        .nlmsg_flags = NLM_F_REQUEST | NLM_F_DUMP,
                        .nlmsg_seq = 0,
                        .nlmsg_pid = 0};
  NetlinkRequest request(header.nlmsg_len);
  std::memcpy(request.data(), &header, sizeof(header));
  std::memcpy(request.data() + sizeof(header), &body, sizeof(body));
  return request;
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
