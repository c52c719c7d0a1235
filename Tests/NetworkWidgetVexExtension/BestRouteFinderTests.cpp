#include <gtest/gtest.h>

#include "NetworkWidgetVexExtension/Providers/BestRouteFinder.h"
#include "Tests/Support/FakePathMonitor.h"
#include "Tests/Support/SimulatedClock.h"
#include "Tests/Support/SimulatedDispatch.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;
using Answers = std::vector<std::optional<std::string>>;

NetworkPath pathOver(std::vector<std::string> names) {
  NetworkPath path{.status = PathStatus::satisfied, .availableInterfaces = {}};
  for (std::string& name : names) path.availableInterfaces.push_back({.name = std::move(name)});
  return path;
}

/// Monitors that never report, as of a system that is too busy.
class SilentPathMonitors final : public PathMonitorFactory {
 public:
  std::unique_ptr<PathMonitor> makePathMonitor(std::optional<PathInterfaceType>) override {
    return std::make_unique<Silent>(*this);
  }

  int alive = 0;

 private:
  class Silent final : public PathMonitor {
   public:
    explicit Silent(SilentPathMonitors& all) : all_(all) { ++all_.alive; }
    ~Silent() override { --all_.alive; }
    Silent(const Silent&) = delete;
    Silent& operator=(const Silent&) = delete;
    void setPathUpdateHandler(UpdateHandler) override {}
    void start(DispatchQueue&) override {}
    void cancel() override {}

   private:
    SilentPathMonitors& all_;
  };
};

class BestRouteFinderTest : public testing::Test {
 protected:
  BestRouteFinder::Completion collect() {
    return [this](std::optional<std::string> name) { answers_.push_back(std::move(name)); };
  }
  void findOver(const NetworkPath& path) {
    pathMonitors_.deliver(path);
    finder_.find(collect());
  }

  SimulatedClock clock_;
  SimulatedDispatch dispatch_{clock_};
  FakePathMonitorFactory pathMonitors_;
  BestRouteFinder finder_{pathMonitors_, dispatch_.mainQueue()};
  Answers answers_;
};

TEST_F(BestRouteFinderTest, NamesTheInterfaceOfTheBestDefaultRoute) {
  findOver(pathOver({"wlan0", "eth0"}));
  dispatch_.runReady();
  EXPECT_EQ(answers_, Answers{"wlan0"});
}

TEST_F(BestRouteFinderTest, AnswersAfterItWasAskedAndNotBefore) {
  findOver(pathOver({"eth0"}));
  EXPECT_TRUE(answers_.empty());
}

TEST_F(BestRouteFinderTest, ListensToAllKindsOfInterfaces) {
  findOver(pathOver({"eth0"}));
  EXPECT_EQ(pathMonitors_.monitors().at(0)->requiredInterfaceType, std::nullopt);
  EXPECT_EQ(pathMonitors_.monitors().at(0)->startedOn, &dispatch_.mainQueue());
}

TEST_F(BestRouteFinderTest, NamesNoneWithoutADefaultRoute) {
  NetworkPath unsatisfied = pathOver({"eth0"});
  unsatisfied.status = PathStatus::unsatisfied;
  findOver(unsatisfied);
  dispatch_.runReady();
  EXPECT_EQ(answers_, Answers{std::nullopt});
}

TEST_F(BestRouteFinderTest, NamesNoneWhenNothingIsUp) {
  findOver(pathOver({}));
  dispatch_.runReady();
  EXPECT_EQ(answers_, Answers{std::nullopt});
}

TEST_F(BestRouteFinderTest, LetsGoOfItsMonitorWithTheFirstUpdate) {
  findOver(pathOver({"eth0"}));
  dispatch_.runReady();
  EXPECT_TRUE(pathMonitors_.monitors().at(0)->cancelled);
  EXPECT_TRUE(pathMonitors_.monitors().at(0)->destroyed);
}

TEST_F(BestRouteFinderTest, AnswersOnceThoughThePathChangesAndTheLimitPasses) {
  findOver(pathOver({"eth0"}));
  dispatch_.runReady();
  pathMonitors_.deliver(pathOver({"wlan0"}));
  dispatch_.advance(1h);
  EXPECT_EQ(answers_, Answers{"eth0"});
}

TEST_F(BestRouteFinderTest, GivesUpAfterASecond) {
  SilentPathMonitors silent;
  BestRouteFinder finder(silent, dispatch_.mainQueue());
  finder.find(collect());
  dispatch_.advance(999ms);
  EXPECT_TRUE(answers_.empty());
  EXPECT_EQ(silent.alive, 1);
  dispatch_.advance(1ms);
  EXPECT_EQ(answers_, Answers{std::nullopt});
  EXPECT_EQ(silent.alive, 0);
}

TEST_F(BestRouteFinderTest, ManyQuestionsAtOnceAreOneSearch) {
  pathMonitors_.deliver(pathOver({"eth0"}));
  for (int count = 0; count < 500; ++count) finder_.find(collect());
  dispatch_.runReady();
  EXPECT_EQ(answers_, Answers(500, "eth0"));
  EXPECT_EQ(pathMonitors_.monitors().size(), 1U);
}

TEST_F(BestRouteFinderTest, AQuestionAfterAnAnswerLooksAnew) {
  findOver(pathOver({"eth0"}));
  dispatch_.runReady();
  findOver(pathOver({"wlan0"}));
  dispatch_.runReady();
  EXPECT_EQ(answers_, (Answers{"eth0", "wlan0"}));
}

TEST_F(BestRouteFinderTest, AnAnswerMayAskAgain) {
  pathMonitors_.deliver(pathOver({"eth0"}));
  finder_.find([this](const std::optional<std::string>&) { finder_.find(collect()); });
  dispatch_.runReady();
  EXPECT_EQ(answers_, Answers{"eth0"});
  EXPECT_EQ(pathMonitors_.monitors().size(), 2U);
}

TEST_F(BestRouteFinderTest, ASearchOutlivesItsFinder) {
  pathMonitors_.deliver(pathOver({"eth0"}));
  BestRouteFinder(pathMonitors_, dispatch_.mainQueue()).find(collect());
  dispatch_.runReady();
  EXPECT_EQ(answers_, Answers{"eth0"});
}

TEST(BestRouteFinder, ASearchThatNeverEndsGoesWithItsQueues) {
  SilentPathMonitors silent;
  {
    SimulatedClock clock;
    SimulatedDispatch dispatch{clock};
    BestRouteFinder(silent, dispatch.mainQueue()).find([](const std::optional<std::string>&) {});
    EXPECT_EQ(silent.alive, 1);
  }
  EXPECT_EQ(silent.alive, 0);
}

}  // namespace
}  // namespace lanternfold
