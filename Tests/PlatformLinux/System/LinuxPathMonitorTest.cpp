// The path monitor against a kernel that really changes, in a network namespace of the test's own.
#include <array>
#include <future>
#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

#include <linux/rtnetlink.h>

#include "PlatformLinux/System/LinuxPathMonitor.h"
#include "PlatformLinux/System/NetlinkEventSocket.h"
#include "Tests/PlatformLinux/Contracts/PathMonitorWorlds.h"

namespace lanternfold {
namespace {

/// Changes the MTU of a link over and over: the cheapest real link event there is.
class LinkShaker {
 public:
  explicit LinkShaker(const std::string& name) { name.copy(request_.ifr_name, IFNAMSIZ - 1); }
  ~LinkShaker() { close(socket_); }
  LinkShaker(const LinkShaker&) = delete;
  LinkShaker& operator=(const LinkShaker&) = delete;

  [[nodiscard]] bool shake() {
    request_.ifr_mtu = 1000 + (++count_ % 400);
    return ioctl(socket_, SIOCSIFMTU, &request_) == 0;
  }

 private:
  int socket_ = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  ifreq request_{};
  int count_ = 0;
};

class LinuxPathMonitorTest : public testing::Test {
 protected:
  void SetUp() override { ASSERT_NO_FATAL_FAILURE(world_.open()); }

  void start(std::optional<PathInterfaceType> requiredType = std::nullopt) {
    monitor_ = world_.factory().makePathMonitor(requiredType);
    monitor_->setPathUpdateHandler([this](const NetworkPath& path) { updates_.push_back(path); });
    monitor_->start(world_.queue());
    world_.settle();
    ASSERT_FALSE(updates_.empty());
  }

  /// Whether the change leads to an update within a second.
  bool isReported(const std::string& command) {
    const std::size_t before = updates_.size();
    EXPECT_TRUE(NetworkNamespace::run(command)) << command;
    const bool isReported = world_.runUntil([&] { return updates_.size() > before; });
    world_.settle();
    return isReported;
  }

  /// The last path once it is `expected`, or as it is after three seconds: the kernel takes up to
  /// one to tell of a carrier.
  std::string pathAwaiting(const std::string& expected) {
    for (int second = 0; second < 3; ++second) {
      if (world_.runUntil([&] { return lastPath() == expected; })) break;
    }
    return lastPath();
  }

  /// "satisfied: en0 far", as last reported.
  std::string lastPath() const {
    std::string text =
        updates_.back().status == PathStatus::satisfied ? "satisfied:" : "unsatisfied:";
    for (const PathInterface& each : updates_.back().availableInterfaces) text += " " + each.name;
    return text;
  }

  LinuxPathWorld world_;
  std::unique_ptr<PathMonitor> monitor_;
  std::vector<NetworkPath> updates_;
};

TEST_F(LinuxPathMonitorTest, EveryChangeIsReportedWithinASecond) {
  start();
  EXPECT_EQ(pathAwaiting("unsatisfied: far en0"), "unsatisfied: far en0");
  EXPECT_TRUE(isReported("ip route add default via 192.0.2.1 dev en0"));
  EXPECT_EQ(pathAwaiting("satisfied: en0 far"), "satisfied: en0 far");
  EXPECT_TRUE(isReported("ip link add eth5 type veth peer name other"));
  EXPECT_EQ(pathAwaiting("satisfied: en0 far"), "satisfied: en0 far")
      << "a link that is down is not listed";
  EXPECT_TRUE(isReported("ip addr add 198.51.100.2/24 dev eth5"));
  EXPECT_TRUE(isReported("ip link set other up && ip link set eth5 up"));
  EXPECT_EQ(pathAwaiting("satisfied: en0 far other eth5"), "satisfied: en0 far other eth5");
  EXPECT_TRUE(isReported("ip route replace default via 198.51.100.1 dev eth5"));
  EXPECT_EQ(pathAwaiting("satisfied: eth5 far en0 other"), "satisfied: eth5 far en0 other");
  EXPECT_TRUE(isReported("ip addr del 192.0.2.2/24 dev en0"));
  EXPECT_TRUE(isReported("ip link set eth5 down"));
  EXPECT_EQ(pathAwaiting("unsatisfied: far en0"), "unsatisfied: far en0");
  EXPECT_TRUE(isReported("ip link del eth5"));
  EXPECT_TRUE(isReported("ip link set far down"));
  EXPECT_EQ(pathAwaiting("unsatisfied:"), "unsatisfied:") << "en0 has lost its carrier";
}

TEST_F(LinuxPathMonitorTest, AnIPv6DefaultRouteSatisfiesToo) {
  ASSERT_TRUE(NetworkNamespace::run("ip -6 addr add 2001:db8::2/64 dev en0 nodad"));
  start();
  EXPECT_TRUE(isReported("ip -6 route add default via 2001:db8::1 dev en0"));
  EXPECT_EQ(pathAwaiting("satisfied: en0 far"), "satisfied: en0 far");
}

TEST_F(LinuxPathMonitorTest, ARouteToSomewhereElseIsNotReported) {
  start();
  EXPECT_FALSE(isReported("ip route add 203.0.113.0/24 via 192.0.2.1 dev en0"));
  EXPECT_FALSE(isReported("ip route add default via 192.0.2.1 dev en0 table 100"));
}

TEST_F(LinuxPathMonitorTest, ARenewedAddressIsNotReported) {
  ASSERT_TRUE(
      NetworkNamespace::run("ip addr add 192.0.2.77/24 dev en0 valid_lft 600 preferred_lft 300"));
  start();
  EXPECT_FALSE(isReported("ip addr change 192.0.2.77/24 dev en0 valid_lft 900 preferred_lft 500"));
}

TEST_F(LinuxPathMonitorTest, ARenamedLinkIsReportedUnderItsNewName) {
  start();
  EXPECT_TRUE(isReported("ip link set en0 down && ip link set en0 name en7 && ip link set en7 up"));
  EXPECT_EQ(pathAwaiting("unsatisfied: far en7"), "unsatisfied: far en7");
}

TEST_F(LinuxPathMonitorTest, TwoThousandLinkEventsASecondLeaveTheLastStateRight) {
  using std::chrono::steady_clock;
  ASSERT_TRUE(NetworkNamespace::run("ip link add shaken type veth peer name still"));
  world_.connect();
  start();
  const std::size_t before = updates_.size();
  LinkShaker shaker("shaken");
  const auto begin = steady_clock::now();
  for (int count = 0; count < 6000; ++count) {
    ASSERT_TRUE(shaker.shake());
    static_cast<void>(world_.runUntil([next = begin + std::chrono::microseconds(500) * count] {
      return steady_clock::now() >= next;
    }));
  }
  world_.disconnect();
  const std::chrono::duration<double> took = steady_clock::now() - begin;
  EXPECT_EQ(pathAwaiting("unsatisfied: far en0"), "unsatisfied: far en0");
  EXPECT_GE(updates_.size() - before, 10U);
  EXPECT_LE(static_cast<double>(updates_.size() - before), took.count() * 10 + 3);
}

/// The loop is held up while reports pile up beyond what the socket may keep.
TEST_F(LinuxPathMonitorTest, LostReportsAreMadeUpForByAFreshLook) {
  ASSERT_TRUE(NetworkNamespace::run("ip link add shaken type veth peer name still"));
  world_.connect();
  start();
  EXPECT_EQ(pathAwaiting("satisfied: en0 far"), "satisfied: en0 far");
  auto control = NetlinkEventSocket::open(RTMGRP_LINK);
  ASSERT_TRUE(control);
  std::promise<void> release;
  world_.loop().post([held = release.get_future()] { held.wait(); });
  LinkShaker shaker("shaken");
  for (int count = 0; count < 20000; ++count) ASSERT_TRUE(shaker.shake());
  world_.disconnect();
  const auto outcome = control->drain([](const NetlinkMessage&) {});
  release.set_value();
  EXPECT_EQ(pathAwaiting("unsatisfied: far en0"), "unsatisfied: far en0");
  // Drained up to the bound of a call, the control socket meets its own loss at the end.
  auto last = outcome;
  for (int call = 0; call < 16 && last == NetlinkEventOutcome::moreWaiting; ++call) {
    last = control->drain([](const NetlinkMessage&) {});
  }
  EXPECT_EQ(last, NetlinkEventOutcome::overflowed) << "nothing was lost: the test shows nothing";
  EXPECT_TRUE(isReported("ip route add default via 192.0.2.1 dev en0"));
}

TEST_F(LinuxPathMonitorTest, ASystemThatCannotBeListenedToGetsOneUpdateAndNoMore) {
  rlimit usual{};
  ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &usual), 0);
  const rlimit none{.rlim_cur = 0, .rlim_max = usual.rlim_max};
  monitor_ = world_.factory().makePathMonitor(std::nullopt);
  monitor_->setPathUpdateHandler([this](const NetworkPath& path) { updates_.push_back(path); });
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
  monitor_->start(world_.queue());
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &usual), 0);
  world_.settle();
  world_.connect();
  world_.settle();
  EXPECT_EQ(updates_, std::vector{NetworkPath{}});
}

/// A path monitor that only a waiting work holds ends within the end of its queues.
TEST_F(LinuxPathMonitorTest, AReportUnderWayFindsItsQueueWhileTheQueuesEnd) {
  // Their memory stays: a report that came too late would find the remains of a queue.
  std::array<std::optional<AsioDispatch>, 200> dispatches;
  int moment = 0;
  for (auto& each : dispatches) {
    AsioDispatch& dispatch = each.emplace(world_.loop());
    std::shared_ptr<PathMonitor> monitor = world_.factory().makePathMonitor(std::nullopt);
    monitor->setPathUpdateHandler([](const NetworkPath&) {});
    monitor->start(dispatch.mainQueue());
    dispatch.mainQueue().after(std::chrono::seconds(60), [monitor] {});
    monitor.reset();
    std::this_thread::sleep_for(std::chrono::microseconds(5) * ++moment);
    each.reset();
  }
}

}  // namespace
}  // namespace lanternfold
