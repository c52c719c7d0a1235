#include <net/if.h>
#include <sys/socket.h>

#include "PlatformLinux/Path/PathEvents.h"
#include "Tests/PlatformLinux/Path/EventBytes.h"

namespace lanternfold {
namespace {

EventBytes linkReport(std::uint16_t type = RTM_NEWLINK, std::uint32_t flags = IFF_UP,
                      std::uint8_t family = AF_UNSPEC) {
  return EventBytes(type, ifinfomsg{.ifi_family = family, .ifi_index = 2, .ifi_flags = flags})
      .text(IFLA_IFNAME, "eth0");
}

EventBytes addressReport(std::uint16_t type, std::uint8_t lastByte) {
  const std::array<std::uint8_t, 4> address = {192, 0, 2, lastByte};
  return EventBytes(type, ifaddrmsg{.ifa_family = AF_INET, .ifa_prefixlen = 24, .ifa_index = 2})
      .value(IFA_LOCAL, address)
      .value(IFA_ADDRESS, address);
}

EventBytes routeReport(std::uint16_t type, std::uint8_t destinationLength, std::uint32_t priority,
                       std::uint32_t table = RT_TABLE_MAIN) {
  const std::array<std::uint8_t, 4> gateway = {192, 0, 2, 1};
  const std::array<std::uint8_t, 4> destination = {198, 51, 100, 0};
  EventBytes report(type, rtmsg{.rtm_family = AF_INET,
                                .rtm_dst_len = destinationLength,
                                .rtm_table = static_cast<std::uint8_t>(table),
                                .rtm_type = RTN_UNICAST});
  if (destinationLength > 0) report.value(RTA_DST, destination);
  return report.value(RTA_GATEWAY, gateway)
      .value(RTA_OIF, std::uint32_t{2})
      .value(RTA_PRIORITY, priority)
      .value(RTA_TABLE, table);
}

/// Knows eth0 up, with 192.0.2.2 and a default route of metric 100.
class PathEvents : public testing::Test {
 protected:
  PathEvents() {
    known_.links[2].link = decodeLinkMessage(linkReport().message()).value();
    known_.addresses.emplace(2,
                             decodeAddressMessage(addressReport(RTM_NEWADDR, 2).message()).value());
    known_.defaultRoutes.push_back(
        decodeRouteMessage(routeReport(RTM_NEWROUTE, 0, 100).message()).value());
  }

  bool isNewsOf(const EventBytes& report) const { return isNews(report.message(), known_); }

  NetworkSnapshot known_;
};

TEST_F(PathEvents, AReportThatRepeatsWhatIsKnownIsNoNews) {
  EXPECT_FALSE(isNewsOf(linkReport()));
  EXPECT_FALSE(isNewsOf(addressReport(RTM_NEWADDR, 2)));
  EXPECT_FALSE(isNewsOf(routeReport(RTM_NEWROUTE, 0, 100)));
}

TEST_F(PathEvents, AChangedLinkIsNews) { EXPECT_TRUE(isNewsOf(linkReport(RTM_NEWLINK, 0))); }

TEST_F(PathEvents, ANewLinkIsNews) {
  known_.links.clear();
  EXPECT_TRUE(isNewsOf(linkReport()));
}

TEST_F(PathEvents, ALinksEndIsNews) { EXPECT_TRUE(isNewsOf(linkReport(RTM_DELLINK))); }

TEST_F(PathEvents, ChangedCountersAreNoNews) {
  auto report = linkReport();
  report.value(IFLA_STATS64, rtnl_link_stats64{.rx_packets = 5, .rx_bytes = 900});
  EXPECT_FALSE(isNewsOf(report));
}

TEST_F(PathEvents, AWirelessEventIsNoNewsThoughItsFlagsDiffer) {
  auto report = linkReport(RTM_NEWLINK, 0);
  report.text(IFLA_WIRELESS, "scan done");
  EXPECT_FALSE(isNewsOf(report));
}

TEST_F(PathEvents, ABridgesReportOfItsPortIsNoNews) {
  EXPECT_FALSE(isNewsOf(linkReport(RTM_NEWLINK, 0, AF_BRIDGE)));
  EXPECT_FALSE(isNewsOf(linkReport(RTM_DELLINK, 0, AF_BRIDGE)));
}

TEST_F(PathEvents, ANewAddressAndTheEndOfOneAreNews) {
  EXPECT_TRUE(isNewsOf(addressReport(RTM_NEWADDR, 3)));
  EXPECT_TRUE(isNewsOf(addressReport(RTM_DELADDR, 2)));
}

TEST_F(PathEvents, AnAddressThatIsOnlyRenewedIsNoNews) {
  auto report = addressReport(RTM_NEWADDR, 2);
  report.value(IFA_CACHEINFO, ifa_cacheinfo{.ifa_prefered = 600, .ifa_valid = 1200});
  EXPECT_FALSE(isNewsOf(report));
}

TEST_F(PathEvents, ADefaultRouteOfAnotherMetricAndTheEndOfOneAreNews) {
  EXPECT_TRUE(isNewsOf(routeReport(RTM_NEWROUTE, 0, 200)));
  EXPECT_TRUE(isNewsOf(routeReport(RTM_DELROUTE, 0, 100)));
}

TEST_F(PathEvents, RoutesToSomewhereAndOfOtherTablesAreNoNews) {
  EXPECT_FALSE(isNewsOf(routeReport(RTM_NEWROUTE, 24, 100)));
  EXPECT_FALSE(isNewsOf(routeReport(RTM_DELROUTE, 24, 100)));
  EXPECT_FALSE(isNewsOf(routeReport(RTM_NEWROUTE, 0, 200, 100)));
}

TEST_F(PathEvents, AReportThatCannotBeDecodedIsNews) {
  for (const std::uint16_t type : {RTM_NEWLINK, RTM_NEWADDR, RTM_NEWROUTE}) {
    EXPECT_TRUE(isNews({.type = type}, known_)) << type;
  }
}

TEST_F(PathEvents, AReportOfAnotherKindIsNoNews) {
  EXPECT_FALSE(isNews({.type = RTM_NEWNEIGH}, known_));
  EXPECT_FALSE(isNews({.type = RTM_NEWRULE}, known_));
}

}  // namespace
}  // namespace lanternfold
