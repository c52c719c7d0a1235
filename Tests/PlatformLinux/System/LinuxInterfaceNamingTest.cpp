// Which real links the widened prefixes take.
#include <filesystem>
#include <fstream>
#include <sys/resource.h>

#include "PlatformLinux/System/LinuxInterfaceNaming.h"
#include "Tests/PlatformLinux/NetworkNamespace.h"

namespace lanternfold {
namespace {

class LinuxInterfaceNamingTest : public testing::Test {
 protected:
  void SetUp() override {
    ENTER_NETWORK_NAMESPACE(network_);
    ASSERT_TRUE(NetworkNamespace::run(
        "ip link add eth0 type veth peer name veth1a2b && ip link add en0 type veth peer name far "
        "&&"
        "ip link add docker0 type bridge && ip link add ifb0 type ifb &&"
        "ip tuntap add dev eth7 mode tap && ip tuntap add dev tap0 mode tap &&"
        "ip tuntap add dev tun0 mode tun && ip link add eth1 link far type macvlan &&"
        "ip link add mac0 link far type macvlan &&"
        "ip link add vxlan5 type vxlan id 5 dstport 4789 && ip link set veth1a2b master docker0"));
  }

  std::unique_ptr<NetworkNamespace> network_;
  LinuxInterfaceNaming naming_;
};

TEST_F(LinuxInterfaceNamingTest, TakesTheWayOutOfAContainerAndNothingElse) {
  const auto matches = naming_.matcher("en");
  for (const char* name : {"eth0", "eth1", "eth7", "en0"}) EXPECT_TRUE(matches(name)) << name;
  for (const char* name :
       {"lo", "veth1a2b", "far", "docker0", "ifb0", "tap0", "tun0", "mac0", "vxlan5"}) {
    EXPECT_FALSE(matches(name)) << name;
  }
}

TEST_F(LinuxInterfaceNamingTest, NoneOfThemIsAModem) {
  const auto matches = naming_.matcher("pdp_ip");
  for (const char* name : {"lo", "eth0", "en0", "tun0"}) EXPECT_FALSE(matches(name)) << name;
}

TEST_F(LinuxInterfaceNamingTest, OneMatcherLooksOnceAndANewOneLooksAgain) {
  const auto matches = naming_.matcher("en");
  EXPECT_FALSE(matches("eth9"));
  ASSERT_TRUE(NetworkNamespace::run("ip link add eth9 type veth peer name beyond"));
  EXPECT_FALSE(matches("eth9"));
  EXPECT_TRUE(naming_.matcher("en")("eth9"));
}

TEST_F(LinuxInterfaceNamingTest, NamesOfTheLiteralFamilyAskTheKernelNothing) {
  const auto matches = naming_.matcher("en");
  EXPECT_TRUE(matches("en0"));
  ASSERT_TRUE(NetworkNamespace::run("ip link add eth9 type veth peer name beyond"));
  EXPECT_TRUE(matches("eth9")) << "the look was made before it was needed";
}

TEST_F(LinuxInterfaceNamingTest, WhatCannotBeReadWidensNothing) {
  rlimit usual{};
  ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &usual), 0);
  const rlimit none{.rlim_cur = 0, .rlim_max = usual.rlim_max};
  const auto matches = naming_.matcher("en");
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
  const bool takesEth0 = matches("eth0");
  const bool takesEn0 = matches("en0");
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &usual), 0);
  EXPECT_FALSE(takesEth0);
  EXPECT_TRUE(takesEn0);
}

TEST_F(LinuxInterfaceNamingTest, AThousandLinksMadeInSoftwareAreNoAdapters) {
  ASSERT_TRUE(NetworkNamespace::run(
      "for i in $(seq 500); do echo link add v$i type veth peer name w$i; done | ip -batch -"));
  const auto matches = naming_.matcher("en");
  for (int number = 1; number <= 500; ++number) {
    EXPECT_FALSE(matches("v" + std::to_string(number)));
  }
  EXPECT_TRUE(matches("eth0"));
}

/// The machine that the test runs on, as its device tree shows it.
TEST(LinuxInterfaceNamingOnThisMachine, EveryEthernetCardIsAnAdapter) {
  namespace fs = std::filesystem;
  const auto matches = LinuxInterfaceNaming().matcher("en");
  for (const auto& entry : fs::directory_iterator("/sys/class/net")) {
    int hardwareType = 0;
    std::ifstream(entry.path() / "type") >> hardwareType;
    const bool isCard = hardwareType == 1 && fs::exists(entry.path() / "device") &&
                        !fs::exists(entry.path() / "master") &&
                        !fs::exists(entry.path() / "phy80211");
    const std::string name = entry.path().filename().string();
    if (isCard) {
      EXPECT_TRUE(matches(name)) << name;
    }
  }
  EXPECT_FALSE(matches("lo"));
}

}  // namespace
}  // namespace lanternfold
