// A thousand resolutions of the internet category, one after the other in one process, leave behind
// what the first hundred left: the whole production side in a network of the test's own, with
// services that answer, that refuse and that stay silent until the next resolution cancels them.
#include <barrier>
#include <filesystem>
#include <fstream>
#include <unistd.h>

#include <gtest/gtest.h>

#include "NetworkMonitor/PublicInfo/ActiveInterfacePublicInfoResolver.h"
#include "NetworkMonitor/PublicInfo/CachedPublicInfoResolver.h"
#include "PlatformLinux/System/SystemClock.h"
#include "PlatformLinux/System/WorkerPool.h"
#include "Tests/CommandLine/HeldResources.h"
#include "Tests/CommandLine/LoopbackEchoService.h"
#include "Tests/CommandLine/SilentServer.h"
#include "Tests/PlatformLinux/NetworkNamespace.h"
#include "Tests/PlatformLinux/PrivateEtc.h"
#include "Wiring/LinuxMachine.h"
#include "Wiring/MonitorGraph.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

/// How long the whole test may take, which waits twice for the path's time-out.
constexpr std::chrono::milliseconds hang = 110s;

ServiceUrls servicesAt(const std::string& ipv4, const std::string& ipv6) {
  return {.ipv4Echo = ServiceUrl::of("http://" + ipv4),
          .ipv6Echo = ServiceUrl::of("http://" + ipv6),
          .geolocation = ServiceUrl::of("http://" + ipv4)};
}

class ResolutionLeakInNamespace : public testing::Test {
 protected:
  void SetUp() override {
    ENTER_NETWORK_NAMESPACE(network_);
    ASSERT_TRUE(NetworkNamespace::run(
        "ip link set lo up && ip link add en0 type veth peer name far && ip link set far up && "
        "echo 1 >/proc/sys/net/ipv6/conf/en0/disable_ipv6 && "
        "echo 1 >/proc/sys/net/ipv6/conf/far/disable_ipv6 && ip link set en0 up && "
        "ip address add 192.0.2.2/24 dev en0 && ip route add default via 192.0.2.1"));
    ASSERT_TRUE(PrivateEtc::mount());
    PrivateEtc::write("nsswitch.conf", "hosts: files\n");
    PrivateEtc::write("hosts", "127.0.0.1 four.example\n::1 six.example\n");
    folder_ = testing::TempDir() + "resolution-leak-" + std::to_string(::getpid());
    machine_ = std::make_unique<LinuxMachine>(
        MachineOptions{.diagnostics = DiagnosticsTarget::standardError,
                       .dataFolder = folder_,
                       .certificateAuthoritiesFile = {}});
    echo_ = std::make_unique<LoopbackEchoService>(clock_);
    ASSERT_TRUE(echo_->isListening());
    services_ = servicesAt("127.0.0.1:" + echo_->ipv4Port(), "[::1]:" + echo_->ipv6Port());
    namedServices_ =
        servicesAt("four.example:" + echo_->ipv4Port(), "six.example:" + echo_->ipv6Port());
    fillPool(QualityOfService::utility);
    fillPool(QualityOfService::background);
  }

  ~ResolutionLeakInNamespace() override {
    monitor_.reset();
    machine_.reset();
    echo_.reset();
    fs::remove_all(folder_);
  }

  [[nodiscard]] const Machine& machine() const { return machine_->machine(); }

  /// As many threads as a pool of the queues may begin, since the number that is needed depends on
  /// how the threads happen to run.
  void fillPool(QualityOfService quality) {
    constexpr auto threads = static_cast<std::ptrdiff_t>(WorkerPool::maximumThreads);
    const auto barrier = std::make_shared<std::barrier<>>(threads + 1);
    for (std::ptrdiff_t count = 0; count < threads; ++count) {
      machine().platform.dispatch.globalQueue(quality).async(
          [barrier] { barrier->arrive_and_wait(); });
    }
    barrier->arrive_and_wait();
  }

  // Everything runs in one run of the main loop, as in a program that goes on and on.

  struct Plan {
    ServiceUrls urls;
    std::function<void(NetworkStateMonitor&)> begin;
    bool isAnswered = true;
  };

  /// Of a monitor of its own, to its end; `then` runs on the main queue.
  void resolve(const Plan& plan, const std::function<void()>& then) {
    monitor_ = makeProgramMonitor(machine(), {.serviceUrls = plan.urls});
    monitor_->setActiveCategories(NetworkSourceCategory::internet());
    monitor_->setStateUpdateHandler([this, isAnswered = plan.isAnswered, then](
                                        const NetworkState& state, bool complete, std::error_code) {
      if (!complete) return;
      // Several reports of one write and of an update of the path are complete.
      monitor_->setStateUpdateHandler(nullptr);
      isAnswered ? expectAnswered(state.internet) : expectNothingKnown(state.internet);
      mainQueue().async([this, then] {
        monitor_->stop();
        monitor_.reset();
        then();
      });
    });
    plan.begin(*monitor_);
  }

  static void expectAnswered(const InternetInfo& info) {
    EXPECT_EQ(info.ip, "127.0.0.1");
    EXPECT_EQ(info.ipv6, "::1");
    EXPECT_EQ(info.isp, "Example Net");
    EXPECT_EQ(info.country, "IT");
    EXPECT_TRUE(info.interface.has_value());
  }
  static void expectNothingKnown(const InternetInfo& info) {
    EXPECT_EQ(info.ip, std::nullopt);
    EXPECT_EQ(info.ipv6, std::nullopt);
    EXPECT_EQ(info.isp, std::nullopt);
    EXPECT_TRUE(info.interface.has_value());
  }

  /// Of every ten one is refused, one meets silence, one finds no stored answer, one looks names up
  /// and one is overtaken.
  Plan planOf(int number) {
    switch (number % 10) {
      case 0:
        return {.urls = servicesAt("127.0.0.1:9", "[::1]:9"), .begin = start, .isAnswered = false};
      case 3:
        return silentPlan();
      case 5:
        return {.urls = namedServices_, .begin = refreshOnce};
      case 6:
        return {.urls = services_, .begin = [](NetworkStateMonitor& monitor) {
                  for (int count = 0; count < 3; ++count) monitor.refresh();
                }};
      case 8:
        machine().platform.userDefaults.standard()->remove(CachedPublicInfoResolver::storageKey);
        return {.urls = services_, .begin = start};
      default:
        return {.urls = services_, .begin = start};
    }
  }
  static void start(NetworkStateMonitor& monitor) { monitor.start(); }
  static void refreshOnce(NetworkStateMonitor& monitor) { monitor.refresh(); }

  /// The second resolution cancels the first, whose questions have come; its own break.
  Plan silentPlan() {
    const auto server = std::make_shared<SilentServer>();
    EXPECT_TRUE(server->isListening());
    return {.urls = servicesAt("127.0.0.1:" + server->port(), "[::1]:" + server->port()),
            .begin =
                [server](NetworkStateMonitor& monitor) {
                  for (int count = 0; count < 2; ++count) {
                    monitor.refresh();
                    EXPECT_TRUE(server->accept(2));
                  }
                  server->end();
                },
            .isAnswered = false};
  }

  void resolveMany(int count, const std::function<void()>& then) {
    if (count == 0 || HasFailure()) return then();
    resolve(planOf(count), [this, count, then] { resolveMany(count - 1, then); });
  }

  /// A resolution keeps the end of its wait for the path until that moment, although the path has
  /// come long since: when what is added after all of them is due, so were they.
  void noteWhenAllIsOver(HeldResources& noted, std::function<void()> then) {
    mainQueue().after(ActiveInterfacePublicInfoResolver::longestWait + 1s,
                      [&noted, then = std::move(then)] {
                        noted = heldResources();
                        then();
                      });
  }

  [[nodiscard]] DispatchQueue& mainQueue() { return machine().platform.dispatch.mainQueue(); }

  std::unique_ptr<NetworkNamespace> network_;
  fs::path folder_;
  SystemClock clock_;
  std::unique_ptr<LinuxMachine> machine_;
  std::unique_ptr<LoopbackEchoService> echo_;
  ServiceUrls services_;
  ServiceUrls namedServices_;
  std::shared_ptr<NetworkStateMonitor> monitor_;
};

TEST_F(ResolutionLeakInNamespace, AThousandHoldWhatAHundredHeld) {
  HeldResources atFirst;
  HeldResources atLast;
  mainQueue().async([&] {
    resolveMany(100, [&] {
      noteWhenAllIsOver(atFirst, [&] {
        resolveMany(900, [&] { noteWhenAllIsOver(atLast, [this] { machine().mainLoop.stop(); }); });
      });
    });
  });
  machine().mainLoop.runFor(hang);
  ASSERT_GT(atLast.allocations.blocks, 0) << "the resolutions did not come to their end";
  EXPECT_EQ(atLast.descriptors, atFirst.descriptors);
  EXPECT_EQ(atLast.threads, atFirst.threads);
  // A cache may be fuller by a little. Of the rarest kind there were ninety more.
  EXPECT_LT(atLast.allocations.blocks - atFirst.allocations.blocks, 80);
  EXPECT_LT(atLast.allocations.bytes - atFirst.allocations.bytes, 900 * 16);
  // What every thread keeps at hand counts as given, some half a megabyte more. Kept transfers
  // would be thirty.
  EXPECT_LT(atLast.heapBytes, atFirst.heapBytes + 2 * 1024 * 1024);
}

}  // namespace
}  // namespace lanternfold
