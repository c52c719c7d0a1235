// Start, path updates, stop, and who keeps whom alive.
#include <thread>

#include <gtest/gtest.h>

#include "Tests/NetworkMonitor/Monitor/MonitorScene.h"

namespace lanternfold {
namespace {

using Category = NetworkSourceCategory;

constexpr const char* fullRefreshOfOther =
    "[0] same\n"
    "[0] same\n"
    "[0] same\n"
    "[8] same, complete\n";

class MonitorLifecycleTest : public testing::Test {
 protected:
  /// Tells of a path change to the monitors that listen and lets the main queue run.
  void changePath() {
    scene.paths.deliver({PathStatus::satisfied, {{"en1", 2, PathInterfaceType::wiredEthernet}}});
    scene.dispatch.runReady();
  }

  MonitorScene scene;
};

TEST_F(MonitorLifecycleTest, FreshMonitorKnowsNothing) {
  const auto monitor = scene.makeMonitorWithoutCellularResolver();

  EXPECT_EQ(monitor->currentState(), NetworkState::initial(scene.strings));
  EXPECT_EQ(monitor->activeCategories(), Category::all());
  EXPECT_TRUE(monitor->upToDateCategories().isEmpty());
  EXPECT_FALSE(monitor->stateComplete());
  EXPECT_FALSE(monitor->isCellularAvailable());
  EXPECT_TRUE(scene.paths.monitors().empty());
}

TEST_F(MonitorLifecycleTest, CellularAvailabilityIsTheResolversOwn) {
  const auto monitor = scene.makeMonitor();

  scene.cellular->available = true;
  EXPECT_TRUE(monitor->isCellularAvailable());
  scene.cellular->available = false;
  EXPECT_FALSE(monitor->isCellularAvailable());
}

TEST_F(MonitorLifecycleTest, StartRefreshesAtOnceAndAgainAtTheInitialPathUpdate) {
  const auto monitor = scene.makeMonitor({Category::wlan(), Category::other()});

  monitor->start();
  scene.reports.note("the main queue runs");
  scene.dispatch.runReady();

  EXPECT_EQ(scene.reports.text(),
            "[0] same\n"
            "[0] same\n"
            "[0] wlan=en0\n"
            "[2] same\n"
            "[2] others=en1,en5\n"
            "[10] same, complete\n"
            "-- the main queue runs\n"
            "[0] same\n"
            "[0] same\n"
            "[0] same\n"
            "[2] same\n"
            "[2] same\n"
            "[10] same, complete\n");
  EXPECT_EQ(scene.interfaces->askedPrefixes, (std::vector<std::string>{"en", "en"}));
}

TEST_F(MonitorLifecycleTest, PathMonitorListensToEveryInterfaceOnTheMainQueue) {
  const auto monitor = scene.makeMonitor(Category());

  monitor->start();

  ASSERT_EQ(scene.paths.monitors().size(), 1u);
  EXPECT_EQ(scene.paths.monitors()[0]->requiredInterfaceType, std::nullopt);
  EXPECT_EQ(scene.paths.monitors()[0]->startedOn, &scene.dispatch.mainQueue());
}

TEST_F(MonitorLifecycleTest, PathMonitorIsStartedBeforeTheFirstRefresh) {
  const auto monitor = scene.makeMonitor(Category::other());
  std::vector<bool> listening;
  monitor->setStateUpdateHandler([&](const NetworkState&, bool, std::error_code) {
    const auto& paths = scene.paths.monitors();
    listening.push_back(paths.size() == 1 && paths[0]->startedOn == &scene.dispatch.mainQueue());
  });

  monitor->start();

  EXPECT_EQ(listening, (std::vector{true, true, true, true}));
}

TEST_F(MonitorLifecycleTest, EveryPathUpdateRefreshesFully) {
  const auto monitor = scene.makeMonitor(Category::other());
  monitor->start();
  scene.dispatch.runReady();
  scene.reports.forget();

  changePath();
  changePath();

  EXPECT_EQ(scene.reports.text(), std::string(fullRefreshOfOther) + fullRefreshOfOther);
}

TEST_F(MonitorLifecycleTest, PathUpdateInTheMiddleOfARunRestartsCompletionFromEmpty) {
  const auto monitor = scene.makeMonitor({Category::other(), Category::internet()});
  monitor->start();
  scene.dispatch.runReady();
  scene.reports.forget();

  scene.internet->answer(1, {internetAt("198.51.100.1"), false});
  scene.reports.note("the path changes");
  changePath();
  scene.reports.note("the run before answers, then the new one");
  scene.internet->answer(1, {internetAt("198.51.100.1"), true});
  scene.internet->answer(2, {internetAt("198.51.100.2"), true});

  EXPECT_EQ(scene.reports.text(),
            "[8] internet=198.51.100.1\n"
            "-- the path changes\n"
            "[0] same\n"
            "[0] same\n"
            "[0] same\n"
            "[8] same\n"
            "-- the run before answers, then the new one\n"
            "[8] same\n"
            "[9] same, complete\n"
            "[9] internet=198.51.100.2, complete\n"
            "[9] same, complete\n");
}

TEST_F(MonitorLifecycleTest, NoPathDrivenRefreshAfterStop) {
  const auto monitor = scene.makeMonitor(Category::other());
  monitor->start();
  scene.dispatch.runReady();
  scene.reports.forget();

  monitor->stop();
  changePath();

  EXPECT_EQ(scene.reports.text(), "");
  EXPECT_TRUE(scene.paths.monitors()[0]->cancelled);
  EXPECT_TRUE(scene.paths.monitors()[0]->destroyed);
}

TEST_F(MonitorLifecycleTest, InternetAnswerAfterStopIsStoredAndReported) {
  const auto monitor = scene.makeMonitor(Category::internet());
  monitor->start();
  monitor->stop();
  scene.dispatch.runReady();
  scene.reports.forget();

  scene.internet->answer(0, {internetAt("198.51.100.7")});

  EXPECT_EQ(scene.reports.text(),
            "[0] internet=198.51.100.7\n"
            "[1] same, complete\n");
}

TEST_F(MonitorLifecycleTest, StopWithoutStartAndTwiceDoesNothing) {
  const auto monitor = scene.makeMonitor(Category::other());

  monitor->stop();
  monitor->start();
  monitor->stop();
  monitor->stop();

  EXPECT_EQ(scene.reports.text(),
            "[0] same\n[0] same\n[0] others=en0,en1,en5\n[8] same, complete\n");
}

TEST_F(MonitorLifecycleTest, SecondStartReplacesThePathMonitorWithoutCancellingIt) {
  const auto monitor = scene.makeMonitor(Category::other());
  monitor->start();
  monitor->start();
  scene.dispatch.runReady();

  ASSERT_EQ(scene.paths.monitors().size(), 2u);
  EXPECT_FALSE(scene.paths.monitors()[0]->cancelled);
  EXPECT_TRUE(scene.paths.monitors()[0]->destroyed);
  EXPECT_EQ(scene.paths.monitors()[0]->updates, 0);
  EXPECT_EQ(scene.paths.monitors()[1]->updates, 1);
}

TEST_F(MonitorLifecycleTest, StartAfterStopListensAgain) {
  const auto monitor = scene.makeMonitor(Category::other());
  monitor->start();
  monitor->stop();
  monitor->start();
  scene.dispatch.runReady();
  scene.reports.forget();

  changePath();

  EXPECT_EQ(scene.reports.text(), fullRefreshOfOther);
}

TEST_F(MonitorLifecycleTest, ReleasedMonitorLivesUntilTheInternetResolutionEnds) {
  auto monitor = scene.makeMonitor(Category::internet());
  const std::weak_ptr<NetworkStateMonitor> watch = monitor;
  monitor->start();
  scene.dispatch.runReady();  // two resolutions are under way now
  scene.reports.forget();

  monitor.reset();
  EXPECT_FALSE(watch.expired());
  scene.internet->answer(0, {internetAt("198.51.100.7"), true});
  EXPECT_FALSE(watch.expired());
  scene.internet->answer(1, {internetAt("198.51.100.7"), false});
  EXPECT_FALSE(watch.expired());
  scene.internet->answer(1, {internetAt("198.51.100.7"), true});

  EXPECT_TRUE(watch.expired());
  EXPECT_TRUE(scene.paths.monitors()[0]->destroyed);
  EXPECT_EQ(scene.reports.text(),
            "[0] internet=198.51.100.7\n"
            "[1] same, complete\n"
            "[1] same, complete\n"
            "[1] same, complete\n"
            "[1] same, complete\n");
}

TEST_F(MonitorLifecycleTest, PathMonitorDoesNotKeepTheMonitorAlive) {
  auto monitor = scene.makeMonitor(Category::other());
  const std::weak_ptr<NetworkStateMonitor> watch = monitor;
  monitor->start();
  scene.reports.forget();

  monitor.reset();
  scene.dispatch.runReady();
  changePath();

  EXPECT_TRUE(watch.expired());
  EXPECT_EQ(scene.reports.text(), "");
}

TEST_F(MonitorLifecycleTest, WithoutAHandlerTheStateIsStillKept) {
  const auto monitor = scene.makeMonitor();
  monitor->setStateUpdateHandler(nullptr);

  monitor->start();
  scene.internet->answer(
      0, {internetAt("198.51.100.7"), true, std::make_error_code(std::errc::timed_out)});

  EXPECT_EQ(scene.reports.text(), "");
  EXPECT_TRUE(monitor->stateComplete());
  EXPECT_EQ(monitor->currentState().internet, internetAt("198.51.100.7"));
  EXPECT_EQ(monitor->currentState().wlan, wlanOver("en0"));
  EXPECT_EQ(monitor->currentState().others, (std::vector{adapter("en1"), adapter("en5")}));
}

TEST_F(MonitorLifecycleTest, InternetAnswersArriveOnTheResolversThread) {
  const auto monitor = scene.makeMonitor(Category::internet());
  std::vector<std::thread::id> reportedOn;
  monitor->refresh();
  monitor->setStateUpdateHandler([&reportedOn](const NetworkState&, bool, std::error_code) {
    reportedOn.push_back(std::this_thread::get_id());
  });

  std::thread resolver([this] {
    scene.internet->answer(0, {internetAt("198.51.100.1"), false});
    scene.internet->answer(0, {internetAt("198.51.100.2"), true});
  });
  const std::thread::id resolverId = resolver.get_id();
  resolver.join();

  EXPECT_EQ(reportedOn, (std::vector{resolverId, resolverId, resolverId}));
  EXPECT_TRUE(monitor->stateComplete());
  EXPECT_EQ(monitor->currentState().internet.ip, "198.51.100.2");
}

TEST(MonitorLifecycleDeathTest, RequiredResolverMissing) {
  MonitorScene scene;
  const NetworkStateMonitor::Environment environment{scene.paths, scene.dispatch.mainQueue(),
                                                     scene.strings};
  EXPECT_DEATH(NetworkStateMonitor(nullptr, scene.interfaces, scene.wlan, nullptr, environment),
               "without one of its required resolvers");
}

}  // namespace
}  // namespace lanternfold
