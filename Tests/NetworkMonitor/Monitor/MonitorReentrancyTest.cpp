// What an update handler may do from inside a report.
#include <utility>

#include <gtest/gtest.h>

#include "Tests/NetworkMonitor/Monitor/MonitorScene.h"

namespace lanternfold {
namespace {

using Category = NetworkSourceCategory;

class MonitorReentrancyTest : public testing::Test {
 protected:
  MonitorScene scene;
};

TEST_F(MonitorReentrancyTest, HandlerThatReplacesItselfIsCalledOnce) {
  const auto monitor = scene.makeMonitor(Category::other());
  const std::string captured(100, 'x');  // on the heap: its release would be seen by a sanitizer
  std::string seen;
  monitor->setStateUpdateHandler(
      [this, captured, &seen, raw = monitor.get(), weak = std::weak_ptr(monitor)](
          const NetworkState&, bool, std::error_code) {
        raw->setStateUpdateHandler(scene.reporter(weak.lock()));
        seen += captured;
      });

  monitor->refresh();

  EXPECT_EQ(seen, captured);
  EXPECT_EQ(scene.reports.text(),
            "[0] same\n"
            "[0] others=en0,en1,en5\n"
            "[8] same, complete\n");
}

TEST_F(MonitorReentrancyTest, HandlerThatRemovesItself) {
  const auto monitor = scene.makeMonitor(Category::other());
  int calls = 0;
  monitor->setStateUpdateHandler(
      [&calls, raw = monitor.get()](const NetworkState&, bool, std::error_code) {
        ++calls;
        raw->setStateUpdateHandler(nullptr);
      });

  monitor->refresh();

  EXPECT_EQ(calls, 1);
  EXPECT_TRUE(monitor->stateComplete());
}

TEST_F(MonitorReentrancyTest, HandlerWithAStateOfItsOwnKeepsItFromReportToReport) {
  const auto monitor = scene.makeMonitor(Category::other());
  std::vector<int> counts;
  monitor->setStateUpdateHandler(
      [&counts, count = 0](const NetworkState&, bool, std::error_code) mutable {
        counts.push_back(++count);
      });

  monitor->refresh();

  EXPECT_EQ(counts, (std::vector{1, 2, 3, 4}));
}

TEST_F(MonitorReentrancyTest, HandlerThatStopsInsideAPathUpdate) {
  const auto monitor = scene.makeMonitor(Category::other());
  monitor->start();
  monitor->setStateUpdateHandler(
      [raw = monitor.get()](const NetworkState&, bool, std::error_code) { raw->stop(); });

  scene.dispatch.runReady();
  scene.paths.deliver({});
  scene.dispatch.runReady();

  EXPECT_EQ(scene.paths.monitors()[0]->updates, 1);
  EXPECT_TRUE(scene.paths.monitors()[0]->cancelled);
  EXPECT_TRUE(monitor->stateComplete());
}

TEST_F(MonitorReentrancyTest, HandlerThatStopsDuringTheRefreshInsideStart) {
  const auto monitor = scene.makeMonitor(Category::other());
  monitor->setStateUpdateHandler(
      [raw = monitor.get()](const NetworkState&, bool, std::error_code) { raw->stop(); });

  monitor->start();
  scene.dispatch.runReady();
  scene.paths.deliver({});
  scene.dispatch.runReady();

  ASSERT_EQ(scene.paths.monitors().size(), 1u);
  EXPECT_TRUE(scene.paths.monitors()[0]->cancelled);
  EXPECT_TRUE(scene.paths.monitors()[0]->destroyed);
  EXPECT_EQ(scene.paths.monitors()[0]->updates, 0);
  // The refresh itself goes on to its end; no path update begins another.
  EXPECT_TRUE(monitor->stateComplete());
  EXPECT_EQ(scene.interfaces->askedPrefixes, (std::vector<std::string>{"en"}));
}

TEST_F(MonitorReentrancyTest, HandlerThatStartsInsideAPathUpdate) {
  const auto monitor = scene.makeMonitor(Category::other());
  monitor->start();
  bool started = false;
  monitor->setStateUpdateHandler(
      [&started, raw = monitor.get()](const NetworkState&, bool, std::error_code) {
        if (!std::exchange(started, true)) raw->start();
      });

  scene.dispatch.runReady();

  ASSERT_EQ(scene.paths.monitors().size(), 2u);
  EXPECT_TRUE(scene.paths.monitors()[0]->destroyed);
  EXPECT_EQ(scene.paths.monitors()[1]->updates, 1);
  EXPECT_TRUE(monitor->stateComplete());
}

TEST_F(MonitorReentrancyTest, HandlerThatRefreshesAgainSeesTheStateOfItsOwnReport) {
  const auto monitor = scene.makeMonitor(Category::other());
  std::vector<std::size_t> othersAtTheEnd;
  bool refreshed = false;
  monitor->setStateUpdateHandler(
      [&, raw = monitor.get()](const NetworkState& state, bool complete, std::error_code) {
        if (!complete || refreshed) return;
        refreshed = true;
        scene.interfaces->machine.clear();
        raw->refresh();
        othersAtTheEnd = {state.others.size(), raw->currentState().others.size()};
      });

  monitor->refresh();

  EXPECT_EQ(othersAtTheEnd, (std::vector<std::size_t>{3, 0}));
}

TEST_F(MonitorReentrancyTest,
       HandlerThatChangesTheActiveCategoriesDuringTheResetDecidesWhatIsAsked) {
  const auto monitor = scene.makeMonitor(Category::all());
  monitor->setStateUpdateHandler([this, weak = std::weak_ptr(monitor)](const NetworkState& state,
                                                                       bool complete,
                                                                       std::error_code error) {
    const auto current = weak.lock();
    current->setActiveCategories(Category::wlan());
    scene.reports.add(current->upToDateCategories(), state, complete, error);
  });

  monitor->refresh();

  EXPECT_EQ(scene.reports.text(),
            "[0] same\n"
            "[0] same\n"
            "[0] wlan=en0\n"
            "[2] same, complete\n");
  EXPECT_EQ(scene.internet->resolutions(), 0u);
}

TEST_F(MonitorReentrancyTest, HandlerThatLetsGoOfTheMonitorDuringARefresh) {
  auto monitor = scene.makeMonitor({Category::wlan(), Category::other()});
  const std::weak_ptr<NetworkStateMonitor> watch = monitor;
  int calls = 0;
  monitor->setStateUpdateHandler([&](const NetworkState&, bool, std::error_code) {
    ++calls;
    monitor.reset();
  });

  monitor->start();

  EXPECT_EQ(calls, 6);
  EXPECT_TRUE(watch.expired());
}

TEST_F(MonitorReentrancyTest, HandlerThatLetsGoOfTheMonitorDuringAPathUpdate) {
  auto monitor = scene.makeMonitor({Category::other()});
  const std::weak_ptr<NetworkStateMonitor> watch = monitor;
  monitor->start();
  monitor->setStateUpdateHandler(
      [&monitor](const NetworkState&, bool, std::error_code) { monitor.reset(); });

  scene.dispatch.runReady();

  EXPECT_TRUE(watch.expired());
}

TEST_F(MonitorReentrancyTest, HandlerThatLetsGoOfTheMonitorDuringAnInternetAnswer) {
  auto monitor = scene.makeMonitor({Category::internet()});
  const std::weak_ptr<NetworkStateMonitor> watch = monitor;
  monitor->refresh();
  int calls = 0;
  monitor->setStateUpdateHandler([&](const NetworkState&, bool, std::error_code) {
    ++calls;
    monitor.reset();
  });

  scene.internet->answer(0, {internetAt("198.51.100.7"), true});

  EXPECT_EQ(calls, 2);
  EXPECT_TRUE(watch.expired());
}

}  // namespace
}  // namespace lanternfold
