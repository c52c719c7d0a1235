#include <gtest/gtest.h>

#include "Tests/NetworkMonitor/Monitor/MonitorScene.h"
#include "Tests/Support/NullInternetInfoResolver.h"

namespace lanternfold {
namespace {

TEST(NullInternetInfoResolverTest, AnswersOnceAndCompleteWithTheInitialInfo) {
  FakeStringTable strings;
  strings.set("Internet", "Rete");
  NullInternetInfoResolver resolver(strings);
  int calls = 0;

  resolver.resolve([&](const InternetInfo& info, bool complete, std::error_code error) {
    ++calls;
    EXPECT_EQ(info, NetworkState::initial(strings).internet);
    EXPECT_TRUE(complete);
    EXPECT_FALSE(error);
  });

  EXPECT_EQ(calls, 1);
}

TEST(NullInternetInfoResolverTest, MonitorOverItIsCompleteWhenRefreshReturns) {
  MonitorScene scene;
  const auto monitor = std::make_shared<NetworkStateMonitor>(
      std::make_shared<NullInternetInfoResolver>(scene.strings), scene.interfaces,
      std::make_shared<FakeWlanInterfaceResolver>(), nullptr,
      NetworkStateMonitor::Environment{scene.paths, scene.dispatch.mainQueue(), scene.strings});
  monitor->setStateUpdateHandler(scene.reporter(monitor));

  monitor->refresh();

  EXPECT_EQ(scene.reports.text(),
            "[0] same\n"
            "[0] same\n"
            "[0] wlan=none\n"
            "[2] same\n"
            "[2] same\n"
            "[2] same\n"
            "[2] same\n"
            "[6] same\n"
            "[6] others=en0,en1,en5\n"
            "[14] same\n"
            "[14] same\n"
            "[15] same, complete\n");
}

}  // namespace
}  // namespace lanternfold
