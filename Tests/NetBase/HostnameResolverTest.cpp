#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "NetBase/HostnameResolver.h"
#include "Tests/Support/FakeHostLookup.h"

namespace lanternfold {
namespace {

using testing::ElementsAre;

constexpr IPv4Bytes ipv4{192, 0, 2, 7};
constexpr IPv6Bytes ipv6{0x20, 0x01, 0x0D, 0xB8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 7};

class HostnameResolverTest : public testing::Test {
 protected:
  HostnameResolverTest() {
    lookup_.addAddress("both", ipv4);
    lookup_.addAddress("both", IPv4Bytes{192, 0, 2, 8});
    lookup_.addAddress("both", ipv6);
    lookup_.addAddress("old", ipv4);
    lookup_.addAddress("new", ipv6);
  }

  FakeHostLookup lookup_;
  BsdHostnameResolver resolver_{lookup_};
};

TEST_F(HostnameResolverTest, TakesTheFirstIPv4AddressWithoutAVersion) {
  EXPECT_EQ(resolver_.resolve("both"), (ResolvedHost{"192.0.2.7", IPVersion::ipv4}));
  EXPECT_THAT(lookup_.questions(), ElementsAre("ipv4 both"));
}

TEST_F(HostnameResolverTest, TakesIPv6WhenThatIsAllThereIs) {
  EXPECT_EQ(resolver_.resolve("new"), (ResolvedHost{"2001:db8::7", IPVersion::ipv6}));
  EXPECT_THAT(lookup_.questions(), ElementsAre("ipv4 new", "ipv6 new"));
}

TEST_F(HostnameResolverTest, AsksOnceForAGivenVersion) {
  EXPECT_EQ(resolver_.resolve("both", IPVersion::ipv4),
            (ResolvedHost{"192.0.2.7", IPVersion::ipv4}));
  EXPECT_EQ(resolver_.resolve("both", IPVersion::ipv6),
            (ResolvedHost{"2001:db8::7", IPVersion::ipv6}));
  EXPECT_THAT(lookup_.questions(), ElementsAre("ipv4 both", "ipv6 both"));
}

TEST_F(HostnameResolverTest, FailsWhenAGivenVersionYieldsNothing) {
  const auto failed = std::unexpected(HostnameResolverError::resolutionFailed);
  EXPECT_EQ(resolver_.resolve("new", IPVersion::ipv4), failed);
  EXPECT_EQ(resolver_.resolve("old", IPVersion::ipv6), failed);
  EXPECT_THAT(lookup_.questions(), ElementsAre("ipv4 new", "ipv6 old"));
}

TEST_F(HostnameResolverTest, FailsWhenNeitherVersionYieldsAnything) {
  EXPECT_EQ(resolver_.resolve("nowhere"), std::unexpected(HostnameResolverError::resolutionFailed));
  EXPECT_THAT(lookup_.questions(), ElementsAre("ipv4 nowhere", "ipv6 nowhere"));
}

TEST_F(HostnameResolverTest, IsUsedThroughItsInterface) {
  const HostnameResolver& resolver = resolver_;
  EXPECT_EQ(resolver.resolve("old"), (ResolvedHost{"192.0.2.7", IPVersion::ipv4}));
}

}  // namespace
}  // namespace lanternfold
