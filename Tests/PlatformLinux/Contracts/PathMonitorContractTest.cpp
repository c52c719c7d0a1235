// What every path monitor does, run against the Linux side and the fake.
#include "Tests/PlatformLinux/Contracts/PathMonitorWorlds.h"

namespace lanternfold {
namespace {

template <typename World>
class PathMonitorContract : public testing::Test {
 protected:
  void SetUp() override { world_.open(); }

  std::unique_ptr<PathMonitor> startedMonitor(
      std::optional<PathInterfaceType> requiredType = std::nullopt) {
    auto monitor = world_.factory().makePathMonitor(requiredType);
    monitor->setPathUpdateHandler([this](const NetworkPath& path) {
      EXPECT_TRUE(world_.queue().isCurrent());
      updates_.push_back(path);
    });
    monitor->start(world_.queue());
    return monitor;
  }

  /// Whether an update with this status comes, or has come last.
  bool reaches(PathStatus status) {
    return world_.runUntil([&] { return !updates_.empty() && updates_.back().status == status; });
  }

  bool hasAdapter() const {
    for (const PathInterface& each : updates_.back().availableInterfaces) {
      if (each.name == "en0") return each.type == PathInterfaceType::wiredEthernet;
    }
    return false;
  }

  World world_;
  std::vector<NetworkPath> updates_;
};

using Worlds = testing::Types<LinuxPathWorld, FakePathWorld>;

class WorldNames {
 public:
  template <typename World>
  static std::string GetName(int) {
    return std::is_same_v<World, LinuxPathWorld> ? "Linux" : "Fake";
  }
};

TYPED_TEST_SUITE(PathMonitorContract, Worlds, WorldNames);

TYPED_TEST(PathMonitorContract, ReportsTheCurrentPathSoonAfterTheStart) {
  const auto monitor = this->startedMonitor();
  EXPECT_TRUE(this->updates_.empty()) << "an update came inside of start";
  ASSERT_TRUE(this->reaches(PathStatus::unsatisfied));
  EXPECT_TRUE(this->hasAdapter());
}

TYPED_TEST(PathMonitorContract, ReportsEveryLaterChange) {
  const auto monitor = this->startedMonitor();
  ASSERT_TRUE(this->reaches(PathStatus::unsatisfied));
  this->world_.connect();
  ASSERT_TRUE(this->reaches(PathStatus::satisfied));
  EXPECT_TRUE(this->hasAdapter());
  this->world_.disconnect();
  EXPECT_TRUE(this->reaches(PathStatus::unsatisfied));
}

/// The path tells of interfaces only: addresses and what a Wi-Fi has joined are not in it.
TYPED_TEST(PathMonitorContract, ReportsAChangeThatLeavesThePathAsItWas) {
  const auto monitor = this->startedMonitor();
  ASSERT_TRUE(this->reaches(PathStatus::unsatisfied));
  this->world_.settle();
  const std::vector<NetworkPath> before = this->updates_;
  this->world_.changeWhatThePathDoesNotTell();
  ASSERT_TRUE(this->world_.runUntil([&] { return this->updates_.size() > before.size(); }));
  EXPECT_EQ(this->updates_.back(), before.back());
}

TYPED_TEST(PathMonitorContract, StaysSilentWhileNothingChanges) {
  const auto monitor = this->startedMonitor();
  ASSERT_TRUE(this->reaches(PathStatus::unsatisfied));
  this->world_.settle();
  const std::size_t count = this->updates_.size();
  this->world_.settle();
  EXPECT_EQ(this->updates_.size(), count);
}

TYPED_TEST(PathMonitorContract, AMonitorOfOneTypeSeesNoOtherInterfaces) {
  this->world_.connect();
  const auto wired = this->startedMonitor(PathInterfaceType::wiredEthernet);
  ASSERT_TRUE(this->reaches(PathStatus::satisfied));
  EXPECT_TRUE(this->hasAdapter());
  const auto wifi = this->startedMonitor(PathInterfaceType::wifi);
  ASSERT_TRUE(this->reaches(PathStatus::unsatisfied));
  EXPECT_TRUE(this->updates_.back().availableInterfaces.empty());
}

TYPED_TEST(PathMonitorContract, NoUpdateRunsAfterCancel) {
  const auto monitor = this->startedMonitor();
  ASSERT_TRUE(this->reaches(PathStatus::unsatisfied));
  this->world_.connect();
  monitor->cancel();
  monitor->cancel();
  this->world_.settle();
  EXPECT_EQ(this->updates_.back().status, PathStatus::unsatisfied);
}

TYPED_TEST(PathMonitorContract, NoUpdateRunsAfterDestruction) {
  auto monitor = this->startedMonitor();
  this->world_.connect();
  monitor.reset();
  this->world_.settle();
  EXPECT_TRUE(this->updates_.empty());
}

TYPED_TEST(PathMonitorContract, AMonitorCancelledBeforeItsStartReportsNothing) {
  const auto monitor = this->world_.factory().makePathMonitor(std::nullopt);
  monitor->setPathUpdateHandler(
      [this](const NetworkPath& path) { this->updates_.push_back(path); });
  monitor->cancel();
  monitor->start(this->world_.queue());
  this->world_.settle();
  EXPECT_TRUE(this->updates_.empty());
}

TYPED_TEST(PathMonitorContract, AHandlerMayCancelItsMonitor) {
  const auto monitor = this->world_.factory().makePathMonitor(std::nullopt);
  monitor->setPathUpdateHandler([&](const NetworkPath& path) {
    this->updates_.push_back(path);
    monitor->cancel();
  });
  monitor->start(this->world_.queue());
  ASSERT_TRUE(this->reaches(PathStatus::unsatisfied));
  this->world_.connect();
  this->world_.settle();
  EXPECT_EQ(this->updates_.size(), 1U);
}

TYPED_TEST(PathMonitorContract, AHandlerMayDestroyItsMonitorAndStillUseWhatItHolds) {
  auto monitor = this->world_.factory().makePathMonitor(std::nullopt);
  const auto held = std::make_shared<std::string>("held by the handler");
  monitor->setPathUpdateHandler([&, held](const NetworkPath& path) {
    monitor.reset();
    EXPECT_EQ(*held, "held by the handler");
    this->updates_.push_back(path);
  });
  monitor->start(this->world_.queue());
  ASSERT_TRUE(this->reaches(PathStatus::unsatisfied));
  this->world_.connect();
  this->world_.settle();
  EXPECT_EQ(this->updates_.size(), 1U);
  EXPECT_EQ(held.use_count(), 1) << "the handler outlived its monitor and its last call";
}

TYPED_TEST(PathMonitorContract, ADestroyedMonitorLetsGoOfItsHandler) {
  const auto held = std::make_shared<int>(0);
  auto monitor = this->world_.factory().makePathMonitor(std::nullopt);
  monitor->setPathUpdateHandler(
      [this, held](const NetworkPath& path) { this->updates_.push_back(path); });
  monitor->start(this->world_.queue());
  ASSERT_TRUE(this->reaches(PathStatus::unsatisfied));
  monitor.reset();
  EXPECT_EQ(held.use_count(), 1);
}

TYPED_TEST(PathMonitorContract, TwoMonitorsOfOneFactoryBothReport) {
  const auto one = this->startedMonitor();
  const auto other = this->startedMonitor();
  EXPECT_TRUE(this->world_.runUntil([&] { return this->updates_.size() >= 2; }));
}

TYPED_TEST(PathMonitorContract, AMonitorWithoutAHandlerMayBeStarted) {
  const auto monitor = this->world_.factory().makePathMonitor(std::nullopt);
  monitor->start(this->world_.queue());
  this->world_.settle();
}

TYPED_TEST(PathMonitorContract, ASystemThatCannotBeListenedToGetsOneUpdateAndNoMore) {
  const auto monitor = this->world_.factory().makePathMonitor(std::nullopt);
  monitor->setPathUpdateHandler(
      [this](const NetworkPath& path) { this->updates_.push_back(path); });
  this->world_.startDeaf(*monitor);
  this->world_.settle();
  this->world_.connect();
  this->world_.settle();
  EXPECT_EQ(this->updates_.size(), 1U);
}

TYPED_TEST(PathMonitorContract, ASecondStartStopsTheProgram) {
  const auto monitor = this->startedMonitor();
  EXPECT_DEATH(monitor->start(this->world_.queue()), "a path monitor was started twice");
}

TYPED_TEST(PathMonitorContract, AHandlerSetAfterTheStartStopsTheProgram) {
  const auto monitor = this->startedMonitor();
  EXPECT_DEATH(monitor->setPathUpdateHandler({}), "after its start");
}

}  // namespace
}  // namespace lanternfold
