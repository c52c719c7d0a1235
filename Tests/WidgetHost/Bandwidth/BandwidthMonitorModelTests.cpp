#include <chrono>

#include <gtest/gtest.h>

#include "Tests/Support/FakeConnectionMetricsReader.h"
#include "Tests/Support/FakePathMonitor.h"
#include "Tests/Support/FakeResolvers.h"
#include "Tests/Support/FakeStringTable.h"
#include "Tests/Support/SimulatedClock.h"
#include "Tests/Support/SimulatedDispatch.h"
#include "WidgetHost/Bandwidth/BandwidthMonitorModel.h"

namespace lanternfold {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using enum BandwidthAvailability;

BasicInterface port(std::string name) {
  return {.active = true,
          .displayName = "Port",
          .name = std::move(name),
          .type = InterfaceType::ethernet,
          .supportsIPv4 = true,
          .IPv4 = {{.address = "192.0.2.1"}}};
}

class BandwidthMonitorModelTest : public testing::Test {
 protected:
  BandwidthMonitorModelTest() {
    interfaces_.machine = {port("en0"), port("en1")};
    bestRouteIs("en1");
    // Every reading finds a thousand bytes more than the one before, and more yet on en1.
    counters_.beforeReading([this] {
      passed_ += 1000;
      for (const BasicInterface& interface : interfaces_.machine) {
        counters_.set(interface.name,
                      {.recvBytes = interface.name == "en1" ? 3 * passed_ : passed_});
      }
    });
  }

  void bestRouteIs(std::string name) {
    pathMonitors_.deliver(
        {.status = PathStatus::satisfied, .availableInterfaces = {{.name = std::move(name)}}});
  }
  void unplug(std::string_view name) {
    std::erase_if(interfaces_.machine,
                  [&](const BasicInterface& interface) { return interface.name == name; });
    counters_.setCounters({});
  }

  [[nodiscard]] const BandwidthMonitorState& state() const { return model_->state(); }
  [[nodiscard]] std::optional<double> received() const {
    const auto& now = state().traffic.now();
    return now ? std::optional(now->received) : std::nullopt;
  }
  [[nodiscard]] std::vector<std::string> offered() const {
    std::vector<std::string> displays;
    for (const NetworkAdapter& adapter : state().adapters) displays.push_back(adapter.display);
    return displays;
  }
  void pass(std::chrono::nanoseconds time) { dispatch_.advance(time); }

  SimulatedClock clock_;
  SimulatedDispatch dispatch_{clock_};
  FakePathMonitorFactory pathMonitors_;
  FakeStringTable strings_;
  FakeConnectionMetricsReader counters_;
  FakeInterfaceResolver interfaces_;
  BestRouteFinder bestRoutes_{pathMonitors_, dispatch_.mainQueue()};
  std::uint64_t passed_ = 0;
  std::unique_ptr<BandwidthMonitorModel> model_ = std::make_unique<BandwidthMonitorModel>(
      BandwidthMonitorModel::Surroundings{.counters = counters_,
                                          .interfaces = interfaces_,
                                          .bestRoutes = bestRoutes_,
                                          .mainQueue = dispatch_.mainQueue(),
                                          .clock = clock_,
                                          .strings = strings_});
};

using Displays = std::vector<std::string>;

TEST_F(BandwidthMonitorModelTest, ReadsNothingBeforeItIsShown) {
  pass(seconds(10));
  EXPECT_EQ(counters_.readCount(), 0U);
  EXPECT_EQ(interfaces_.askedPrefixes.size(), 0U);
  EXPECT_EQ(state(), BandwidthMonitorState{});
}

TEST_F(BandwidthMonitorModelTest, ReadsOnceASecondWhileItIsShown) {
  model_->setShown(true);
  pass(milliseconds(10'500));
  EXPECT_EQ(counters_.readCount(), 11U);
  model_->setShown(false);
  pass(seconds(10));
  EXPECT_EQ(counters_.readCount(), 11U);
}

TEST_F(BandwidthMonitorModelTest, ShowsTheAdapterOfTheBestRoute) {
  model_->setShown(true);
  pass(milliseconds(1500));
  EXPECT_EQ(state().availability, present);
  EXPECT_EQ(state().adapterName, "Port (en1)");
  EXPECT_EQ(state().chosenIdentifier, "auto");
  EXPECT_EQ(received(), 3000);
  EXPECT_EQ(offered(), (Displays{"Automatic, now Port (en1)", "Port (en0)", "Port (en1)"}));
}

TEST_F(BandwidthMonitorModelTest, IsSoonThereAndHasARateASecondLater) {
  model_->setShown(true);
  pass(milliseconds(1));
  EXPECT_EQ(state().availability, present);
  EXPECT_EQ(state().traffic.totals->recvBytes, 3000U);
  EXPECT_EQ(received(), std::nullopt);
  pass(seconds(1));
  EXPECT_EQ(received(), 3000);
}

TEST_F(BandwidthMonitorModelTest, AChoiceOfAnotherAdapterHasItsMinuteAtOnce) {
  model_->setShown(true);
  pass(milliseconds(2500));
  model_->choose("en0");
  EXPECT_EQ(state().chosenIdentifier, "en0");
  EXPECT_EQ(state().adapterName, "Port (en0)");
  EXPECT_EQ(received(), 1000);
  model_->choose("auto");
  EXPECT_EQ(received(), 3000);
}

TEST_F(BandwidthMonitorModelTest, AnIdentifierThatIsNotOfferedChoosesNothing) {
  model_->setShown(true);
  pass(milliseconds(500));
  model_->choose("lo");
  EXPECT_EQ(state().chosenIdentifier, "auto");
}

TEST_F(BandwidthMonitorModelTest, TellsOfEveryChangeAndOfNothingElse) {
  int changes = 0;
  model_->setObserver([&] { ++changes; });
  model_->setShown(true);
  EXPECT_EQ(changes, 0) << "not inside the call";
  pass(milliseconds(1));
  const int first = changes;
  EXPECT_GT(first, 0);
  pass(seconds(3));
  EXPECT_EQ(changes, first + 3);
  model_->choose("auto");
  EXPECT_EQ(changes, first + 3);
  model_->choose("en0");
  EXPECT_EQ(changes, first + 4);
}

TEST_F(BandwidthMonitorModelTest, AnObserverMayHideIt) {
  model_->setObserver([&] { model_->setShown(false); });
  model_->setShown(true);
  pass(seconds(5));
  EXPECT_LE(counters_.readCount(), 1U);
}

TEST_F(BandwidthMonitorModelTest, ReadsNothingWhileTheSessionIsLocked) {
  model_->setShown(true);
  pass(milliseconds(1500));
  model_->setLocked(true);
  pass(seconds(5));
  EXPECT_EQ(counters_.readCount(), 2U);
  model_->setLocked(false);
  pass(milliseconds(1500));
  EXPECT_EQ(counters_.readCount(), 4U);
  const TrafficMinute& minute = state().traffic.minute;
  EXPECT_TRUE(minute[59]);
  EXPECT_FALSE(minute[58]) << "what went through meanwhile is not one second's";
  EXPECT_TRUE(minute[59 - 6]);
}

TEST_F(BandwidthMonitorModelTest, AHiddenOneStaysQuietWhenTheSessionIsUnlocked) {
  model_->setLocked(true);
  model_->setShown(true);
  pass(seconds(2));
  EXPECT_EQ(counters_.readCount(), 0U);
  model_->setShown(false);
  model_->setLocked(false);
  pass(seconds(2));
  EXPECT_EQ(counters_.readCount(), 0U);
}

TEST_F(BandwidthMonitorModelTest, ASleepIsAGap) {
  model_->setShown(true);
  pass(milliseconds(2500));
  model_->resumed();
  pass(seconds(1));
  EXPECT_EQ(received(), std::nullopt);
  pass(seconds(1));
  EXPECT_EQ(received(), 3000);
}

TEST_F(BandwidthMonitorModelTest, FollowsTheBestRoute) {
  model_->setShown(true);
  pass(milliseconds(1500));
  bestRouteIs("en0");
  model_->networkPathChanged();
  pass(seconds(1));
  EXPECT_EQ(state().adapterName, "Port (en0)");
  EXPECT_EQ(received(), 1000);
}

TEST_F(BandwidthMonitorModelTest, ManyChangesOfThePathAskForAdaptersOnceASecond) {
  model_->setShown(true);
  pass(milliseconds(500));
  const std::size_t asked = interfaces_.askedPrefixes.size();
  for (int change = 0; change < 100; ++change) {
    model_->networkPathChanged();
    pass(milliseconds(20));
  }
  EXPECT_LE(interfaces_.askedPrefixes.size(), asked + 2);
}

TEST_F(BandwidthMonitorModelTest, AsksForAdaptersAgainOnlyWhenInterfacesComeOrGo) {
  model_->setShown(true);
  pass(milliseconds(5500));
  EXPECT_EQ(interfaces_.askedPrefixes.size(), 1U);
  interfaces_.machine.push_back(port("en2"));
  pass(seconds(5));
  EXPECT_EQ(interfaces_.askedPrefixes.size(), 2U);
  EXPECT_EQ(offered().back(), "Port (en2)");
  model_->choose("en2");
  EXPECT_EQ(received(), 1000);
}

TEST_F(BandwidthMonitorModelTest, AnAdapterThatIsGoneStaysChosenAndComesBack) {
  model_->setShown(true);
  pass(milliseconds(1500));
  model_->choose("en1");
  unplug("en1");
  pass(milliseconds(2500));
  EXPECT_EQ(state().availability, gone);
  EXPECT_EQ(state().adapterName, "Port (en1)");
  EXPECT_EQ(state().chosenIdentifier, "en1");
  EXPECT_EQ(offered(), (Displays{"Automatic, now Port (en0)", "Port (en0)", "Port (en1)"}));
  EXPECT_TRUE(state().traffic.minute[59 - 3]) << "what was measured before stays";
  interfaces_.machine.push_back(port("en1"));
  pass(seconds(3));
  EXPECT_EQ(state().availability, present);
  EXPECT_EQ(received(), 3000);
  EXPECT_EQ(offered(), (Displays{"Automatic, now Port (en1)", "Port (en0)", "Port (en1)"}));
}

TEST_F(BandwidthMonitorModelTest, AnAutomaticChoiceFallsOnAnotherAdapterWhenItsOwnIsGone) {
  model_->setShown(true);
  pass(milliseconds(1500));
  unplug("en1");
  pass(milliseconds(1500));
  EXPECT_EQ(state().adapterName, "Port (en0)");
  EXPECT_EQ(state().availability, present);
}

TEST_F(BandwidthMonitorModelTest, AMachineWithoutAdaptersSaysSoUntilThereIsOne) {
  interfaces_.machine.clear();
  model_->setShown(true);
  pass(milliseconds(1500));
  EXPECT_EQ(state().availability, noAdapter);
  EXPECT_EQ(offered(), Displays{"Automatic"});
  interfaces_.machine.push_back(port("en0"));
  pass(seconds(2));
  EXPECT_EQ(state().availability, present);
}

TEST_F(BandwidthMonitorModelTest, CountersThatCannotBeReadAreNotAvailableUntilTheyCan) {
  model_->setShown(true);
  pass(milliseconds(1500));
  counters_.setFailing(true);
  pass(seconds(2));
  EXPECT_EQ(state().availability, gone);
  EXPECT_EQ(received(), std::nullopt);
  counters_.setFailing(false);
  pass(seconds(2));
  EXPECT_EQ(state().availability, present);
  EXPECT_EQ(received(), 3000);
}

TEST_F(BandwidthMonitorModelTest, AMonitorThatIsGoneIsNotAskedByWhatWasUnderWay) {
  model_->setShown(true);
  dispatch_.runOne();
  ASSERT_EQ(pathMonitors_.monitors().size(), 1U) << "the search for the best route";
  model_.reset();
  pass(seconds(3));
  EXPECT_EQ(interfaces_.askedPrefixes.size(), 0U);
}

}  // namespace
}  // namespace lanternfold
