// The list of DNS servers, as `SNUtils` and `NetUtils` answer it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/Support/NetBaseEnvironment.h"

namespace lanternfold {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const IPv6Bytes ipv6Server{0x20, 0x01, 0x0D, 0xB8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x35};

TEST(DnsServers, AreListedAsTextInResolverOrder) {
  NetBaseEnvironment world;
  world.resolver.setServers({{IPv4Bytes{192, 168, 1, 1}, ipv6Server, IPv4Bytes{203, 0, 113, 9}}});
  EXPECT_THAT(world.snUtils.listDNSServers(),
              ElementsAre("192.168.1.1", "2001:db8::35", "203.0.113.9"));
  EXPECT_THAT(world.netUtils.defaultDnsServers(),
              ElementsAre("192.168.1.1", "2001:db8::35", "203.0.113.9"));
  EXPECT_THAT(world.log.lines(), IsEmpty());
}

TEST(DnsServers, AreEmptyWhenNoneIsConfigured) {
  const NetBaseEnvironment world;
  EXPECT_THAT(world.snUtils.listDNSServers(), IsEmpty());
}

TEST(DnsServers, AreEmptyWhenTheResolverCannotBeInitialised) {
  NetBaseEnvironment world;
  world.resolver.setServers(std::nullopt);
  EXPECT_THAT(world.snUtils.listDNSServers(), IsEmpty());
  EXPECT_THAT(world.log.lines(), IsEmpty());
}

TEST(DnsServers, OfAnUndefinedFamilyAreLoggedAndLeftOut) {
  NetBaseEnvironment world;
  world.resolver.setServers(
      {{IPv4Bytes{192, 168, 1, 1}, OtherAddress{}, LinkAddress{}, ipv6Server}});
  EXPECT_THAT(world.snUtils.listDNSServers(), ElementsAre("192.168.1.1", "2001:db8::35"));
  EXPECT_THAT(world.log.lines(), ElementsAre("Undefined family.", "Undefined family."));
}

}  // namespace
}  // namespace lanternfold
