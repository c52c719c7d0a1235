// The reports of a family of generic netlink from the real kernel, in a network namespace of the
// test's own. The family is "ethtool", which needs no hardware.
#include <net/if.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <gtest/gtest.h>
#include <linux/ethtool.h>
#include <linux/ethtool_netlink.h>
#include <linux/sockios.h>

#include "PlatformLinux/System/GenericEventSocket.h"
#include "PlatformLinux/System/WifiCellNews.h"
#include "Tests/PlatformLinux/NetworkNamespace.h"

namespace lanternfold {
namespace {

class GenericEventSocketInNamespaceTest : public testing::Test {
 protected:
  void SetUp() override {
    ENTER_NETWORK_NAMESPACE(network_);
    ASSERT_TRUE(NetworkNamespace::run("ip link add en0 type veth peer name far"));
  }

  /// Turns a feature of the link on or off, which the family reports.
  static void setSegmentation(bool isOn) {
    ethtool_value value{.cmd = ETHTOOL_SGSO, .data = isOn ? 1U : 0U};
    ifreq request{};
    std::string("en0").copy(request.ifr_name, IFNAMSIZ - 1);
    request.ifr_data = reinterpret_cast<char*>(&value);
    const int descriptor = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    EXPECT_EQ(ioctl(descriptor, SIOCETHTOOL, &request), 0);
    close(descriptor);
  }

  /// Whether something arrives; the kernel reports before the change returns.
  static bool isReadable(const GenericEventSocket& socket) {
    pollfd ready{.fd = socket.descriptor(), .events = POLLIN, .revents = 0};
    return poll(&ready, 1, 0) == 1;
  }

  std::unique_ptr<NetworkNamespace> network_;
};

TEST_F(GenericEventSocketInNamespaceTest, DeliversTheReportsOfTheFamilysGroup) {
  auto socket = GenericEventSocket::open(ETHTOOL_GENL_NAME, {ETHTOOL_MCGRP_MONITOR_NAME});
  ASSERT_TRUE(socket);
  setSegmentation(false);
  setSegmentation(true);
  std::vector<int> commands;
  const auto outcome = socket->drain([&](const NetlinkMessage& message) {
    commands.push_back(genericCommand(message).value_or(0));
  });
  EXPECT_EQ(outcome, NetlinkEventOutcome::drained);
  EXPECT_EQ(commands, (std::vector<int>{ETHTOOL_MSG_FEATURES_NTF, ETHTOOL_MSG_FEATURES_NTF}));
}

TEST_F(GenericEventSocketInNamespaceTest, HearsNothingOfGroupsThatWereNotNamed) {
  auto socket = GenericEventSocket::open(ETHTOOL_GENL_NAME, {"no-such-group"});
  ASSERT_TRUE(socket);
  setSegmentation(false);
  EXPECT_FALSE(isReadable(*socket));
}

TEST_F(GenericEventSocketInNamespaceTest, AFamilyThatIsNotThereIsWaitedFor) {
  auto socket = GenericEventSocket::open("no-such-family", {ETHTOOL_MCGRP_MONITOR_NAME});
  ASSERT_TRUE(socket);
  setSegmentation(false);
  EXPECT_FALSE(isReadable(*socket));
  EXPECT_EQ(socket->drain([](const NetlinkMessage&) {}), NetlinkEventOutcome::drained);
}

TEST_F(GenericEventSocketInNamespaceTest, LostReportsAreToldOnce) {
  auto socket = GenericEventSocket::open(ETHTOOL_GENL_NAME, {ETHTOOL_MCGRP_MONITOR_NAME});
  ASSERT_TRUE(socket);
  for (int count = 0; count < 4000; ++count) setSegmentation(count % 2 == 0);
  int reports = 0;
  const auto count = [&](const NetlinkMessage&) { ++reports; };
  EXPECT_EQ(socket->drain(count), NetlinkEventOutcome::overflowed);
  static_cast<void>(socket->drain(count));
  EXPECT_LT(reports, 4000) << "nothing was lost: the test shows nothing";
  reports = 0;
  setSegmentation(false);
  setSegmentation(true);
  EXPECT_EQ(socket->drain(count), NetlinkEventOutcome::drained);
  EXPECT_GE(reports, 1);
}

TEST_F(GenericEventSocketInNamespaceTest, ThereIsNoJoiningAGroupThatTheKernelDoesNotHave) {
  auto socket = NetlinkEventSocket::openGeneric();
  ASSERT_TRUE(socket);
  EXPECT_TRUE(socket->join(GENL_ID_CTRL));
  EXPECT_TRUE(socket->join(GENL_ID_CTRL));
  EXPECT_FALSE(socket->join(1U << 20U));
}

/// A namespace of one's own has no radio, and so no news of cells.
TEST_F(GenericEventSocketInNamespaceTest, CellsMayHaveChangedUntilTheNewsAreListenedTo) {
  WifiCellNews news;
  EXPECT_TRUE(news.mayHaveChanged()) << "the first reading";
  EXPECT_TRUE(news.mayHaveChanged()) << "the second one, which begins to listen";
  EXPECT_FALSE(news.mayHaveChanged());
  EXPECT_FALSE(news.mayHaveChanged());
}

}  // namespace
}  // namespace lanternfold
