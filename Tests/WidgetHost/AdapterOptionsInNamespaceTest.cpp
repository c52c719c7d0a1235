// The list of adapters over the real kernel, while the network changes.
#include <chrono>

#include <gtest/gtest.h>

#include "NetBase/NetUtils.h"
#include "NetBase/SNUtils.h"
#include "NetworkMonitor/Interfaces/PosixInterfaceResolver.h"
#include "PlatformLinux/System/AsioDispatch.h"
#include "PlatformLinux/System/EventLoop.h"
#include "PlatformLinux/System/LinuxConnectionMetricsReader.h"
#include "PlatformLinux/System/LinuxInterfaceNaming.h"
#include "PlatformLinux/System/LinuxNetworkConfiguration.h"
#include "PlatformLinux/System/LinuxNetworkKernel.h"
#include "PlatformLinux/System/LinuxPathMonitor.h"
#include "PlatformLinux/System/LinuxResolverConfiguration.h"
#include "PlatformLinux/System/UdevHardwareDatabase.h"
#include "Tests/PlatformLinux/NetworkNamespace.h"
#include "Tests/Support/FakeStringTable.h"
#include "Tests/Support/RecordingDiagnosticLog.h"
#include "WidgetHost/AdapterIntentHandler.h"

namespace lanternfold {
namespace {

/// The production side of what the handler asks, in the namespace of the thread that makes it.
struct LinuxSide {
  RecordingDiagnosticLog log;
  FakeStringTable strings;
  EventLoop loop;
  AsioDispatch dispatch{loop};
  LinuxPathMonitorFactory pathMonitors{loop};
  LinuxNetworkKernel kernel;
  LinuxResolverConfiguration resolverConfiguration;
  LinuxInterfaceNaming naming;
  UdevHardwareDatabase hardwareDatabase;
  LinuxNetworkConfiguration configuration{hardwareDatabase};
  AdapterIntentHandler handler{
      std::make_shared<PosixInterfaceResolver>(
          std::make_shared<LinuxConnectionMetricsReader>(),
          NetUtils(SNUtils(kernel, resolverConfiguration, naming, log)), configuration, strings),
      std::make_shared<BestRouteFinder>(pathMonitors, dispatch.mainQueue()), strings};
};

class AdapterOptionsInNamespace : public testing::Test {
 protected:
  void SetUp() override {
    ENTER_NETWORK_NAMESPACE(network_);
    ASSERT_TRUE(NetworkNamespace::run(
        "ip link add en0 type veth peer name far0 && ip link add en1 type veth peer name far1 && "
        "ip link set far0 up && ip link set far1 up && ip link set en0 up && "
        "ip link set en1 up && ip address add 192.0.2.2/24 dev en0 && "
        "ip address add 198.51.100.2/24 dev en1 && "
        "ip route add default via 198.51.100.1 metric 10 && "
        "ip route add default via 192.0.2.1 metric 20"));
    linux_ = std::make_unique<LinuxSide>();
  }

  /// The options' identifiers, the automatic one with what it says it is.
  [[nodiscard]] std::vector<std::string> options() {
    std::vector<std::string> options;
    linux_->handler.provideAdapterOptions({}, [&](const auto& adapters) {
      for (const NetworkAdapter& adapter : *adapters) {
        options.push_back(options.empty() ? adapter.display : *adapter.identifier);
      }
      linux_->dispatch.stopMain();
    });
    constexpr std::chrono::seconds hang{30};
    EXPECT_TRUE(linux_->dispatch.runMainUntil(std::chrono::steady_clock::now() + hang));
    return options;
  }

  // In this order: the loop's thread ends before the namespace is left.
  std::unique_ptr<NetworkNamespace> network_;
  std::unique_ptr<LinuxSide> linux_;
};

TEST_F(AdapterOptionsInNamespace, FollowTheAdaptersAndTheBestDefaultRoute) {
  using testing::ElementsAre;
  using testing::EndsWith;
  EXPECT_THAT(options(), ElementsAre(EndsWith("(en1)"), "en0", "en1"));
  ASSERT_TRUE(NetworkNamespace::run("ip route del default metric 10"));
  EXPECT_THAT(options(), ElementsAre(EndsWith("(en0)"), "en0", "en1"));
  ASSERT_TRUE(NetworkNamespace::run("ip link del en0"));
  EXPECT_THAT(options(), ElementsAre(EndsWith("(en1)"), "en1"));
  ASSERT_TRUE(NetworkNamespace::run("ip link del en1"));
  EXPECT_THAT(options(), ElementsAre("Automatic"));
}

}  // namespace
}  // namespace lanternfold
