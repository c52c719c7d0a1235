#include "NetworkMonitor/PublicInfo/ActiveInterfacePublicInfoResolver.h"
#include "NetworkMonitor/PublicInfo/PublicInfoResolverError.h"
#include "Tests/Support/FakePathMonitor.h"
#include "Tests/Support/FakeResolvers.h"
#include "Tests/Support/SimulatedDispatch.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;
using enum PublicInfoKey;
using Answer = PublicInfoResolver::Answer;
using Keys = PublicInfoResolver::Keys;

NetworkPath pathOver(std::vector<PathInterface> interfaces) {
  return {.status = PathStatus::satisfied, .availableInterfaces = std::move(interfaces)};
}

BasicInterface record(const char* name, InterfaceType type) {
  BasicInterface interface;
  interface.active = true;
  interface.displayName = "Adapter";
  interface.name = name;
  interface.type = type;
  return interface;
}

class ActiveInterfaceTest : public testing::Test {
 protected:
  ActiveInterfaceTest() { interfaces_->machine = {en0_, en1_}; }

  std::shared_ptr<ActiveInterfacePublicInfoResolver> makeResolver() {
    return std::make_shared<ActiveInterfacePublicInfoResolver>(
        interfaces_, ActiveInterfacePublicInfoResolver::Environment{paths_, dispatch_.mainQueue()});
  }
  void ask(ActiveInterfacePublicInfoResolver& resolver, Keys keys = {interface}) {
    resolver.resolve(std::move(keys), [this](Answer answer) {
      EXPECT_TRUE(dispatch_.mainQueue().isCurrent());
      answers_.push_back(std::move(answer));
    });
  }
  /// Of a request whose path is that of `paths_`; it takes no time.
  Answer answer() {
    ask(*resolver_);
    dispatch_.runReady();
    EXPECT_EQ(answers_.size(), 1U);
    return answers_.empty() ? std::unexpected(std::error_code()) : answers_.front();
  }
  static Answer interfaceOf(BasicInterface answered, InterfaceType type) {
    answered.type = type;
    return PublicInfo{{interface, std::move(answered)}};
  }

  const BasicInterface en0_ = record("en0", InterfaceType::bluetooth);
  const BasicInterface en1_ = record("en1", InterfaceType::unknown);
  SimulatedClock clock_;
  SimulatedDispatch dispatch_{clock_};
  FakePathMonitorFactory paths_;
  const std::shared_ptr<FakeInterfaceResolver> interfaces_ =
      std::make_shared<FakeInterfaceResolver>();
  std::shared_ptr<ActiveInterfacePublicInfoResolver> resolver_ = makeResolver();
  std::vector<Answer> answers_;
};

TEST_F(ActiveInterfaceTest, WithoutAWayOutNoInterfaceCarriesTheTraffic) {
  paths_.deliver({.status = PathStatus::unsatisfied,
                  .availableInterfaces = {{.name = "en0", .type = PathInterfaceType::wifi}}});
  EXPECT_EQ(answer(), Answer(PublicInfo{}));
}

TEST_F(ActiveInterfaceTest, SupportsTheInterfaceAlone) {
  EXPECT_EQ(resolver_->supportedKeys(), (Keys{interface}));
}

TEST_F(ActiveInterfaceTest, WithoutTheKeyCompletesAtOnceWithoutAskingAnything) {
  int completions = 0;
  for (const Keys& keys : {Keys{}, Keys{ip, country}}) {
    resolver_->resolve(keys, [&completions](const Answer& answer) {
      EXPECT_EQ(answer, PublicInfo{});
      ++completions;
    });
  }
  EXPECT_EQ(completions, 2);
  EXPECT_TRUE(paths_.monitors().empty());
  EXPECT_EQ(dispatch_.waitingWorks(), 0U);
}

TEST_F(ActiveInterfaceTest, AnswersTheFirstInterfaceOfThePath) {
  paths_.deliver(pathOver({{.name = "en1", .type = PathInterfaceType::wiredEthernet},
                           {.name = "en0", .type = PathInterfaceType::wifi}}));
  EXPECT_EQ(answer(), interfaceOf(en1_, InterfaceType::ethernet));
}

TEST_F(ActiveInterfaceTest, ThePathsTypeOverwritesTheRecords) {
  const std::vector<std::pair<PathInterfaceType, InterfaceType>> types{
      {PathInterfaceType::wifi, InterfaceType::wlan},
      {PathInterfaceType::cellular, InterfaceType::cellular},
      {PathInterfaceType::wiredEthernet, InterfaceType::ethernet}};
  for (const auto& [seen, expected] : types) {
    answers_.clear();
    paths_.deliver(pathOver({{.name = "en0", .type = seen}}));
    EXPECT_EQ(answer(), interfaceOf(en0_, expected));
  }
}

TEST_F(ActiveInterfaceTest, OtherTypesLeaveTheRecordsOwn) {
  for (const auto seen : {PathInterfaceType::other, PathInterfaceType::loopback}) {
    answers_.clear();
    paths_.deliver(pathOver({{.name = "en0", .type = seen}}));
    EXPECT_EQ(answer(), interfaceOf(en0_, InterfaceType::bluetooth));
  }
}

TEST_F(ActiveInterfaceTest, APathWithoutAnInterfaceIsAnsweredAtOnceWithNothing) {
  EXPECT_EQ(answer(), PublicInfo{});
}

TEST_F(ActiveInterfaceTest, AnUnknownNameIsAnsweredAtOnceWithNothing) {
  paths_.deliver(pathOver({{.name = "tun0", .type = PathInterfaceType::other},
                           {.name = "en0", .type = PathInterfaceType::wifi}}));
  EXPECT_EQ(answer(), PublicInfo{});
}

TEST_F(ActiveInterfaceTest, ListensToAllInterfacesOnTheMainQueue) {
  static_cast<void>(answer());
  ASSERT_EQ(paths_.monitors().size(), 1U);
  EXPECT_EQ(paths_.monitors()[0]->requiredInterfaceType, std::nullopt);
  EXPECT_EQ(paths_.monitors()[0]->startedOn, &dispatch_.mainQueue());
}

TEST_F(ActiveInterfaceTest, ActsOnTheFirstUpdateOnly) {
  paths_.deliver(pathOver({{.name = "en0", .type = PathInterfaceType::wifi}}));
  ask(*resolver_);
  // The second update waits on the queue behind the first one.
  ASSERT_TRUE(dispatch_.runUntil([&] { return paths_.monitors().size() == 1; }, 0s));
  paths_.deliver(pathOver({{.name = "en1", .type = PathInterfaceType::wifi}}));
  dispatch_.advance(1h);
  EXPECT_EQ(answers_, (std::vector{interfaceOf(en0_, InterfaceType::wlan)}));
  EXPECT_EQ(paths_.monitors()[0]->updates, 1);
}

TEST_F(ActiveInterfaceTest, TheMonitorIsCancelledAndLetGoWithTheAnswer) {
  static_cast<void>(answer());
  EXPECT_TRUE(paths_.monitors()[0]->cancelled);
  EXPECT_TRUE(paths_.monitors()[0]->destroyed);
}

TEST_F(ActiveInterfaceTest, AnAnswerIsNotFollowedByATimeout) {
  paths_.deliver(pathOver({{.name = "en0", .type = PathInterfaceType::wifi}}));
  ask(*resolver_);
  dispatch_.advance(1h);
  EXPECT_EQ(answers_, (std::vector{interfaceOf(en0_, InterfaceType::wlan)}));
  EXPECT_EQ(dispatch_.waitingWorks(), 0U);
}

/// Monitors that report nothing until the test says so.
class MutePaths final : public PathMonitorFactory {
 public:
  struct State {
    PathMonitor::UpdateHandler handler;
    bool cancelled = false;
    bool destroyed = false;
  };

  [[nodiscard]] std::unique_ptr<PathMonitor> makePathMonitor(
      std::optional<PathInterfaceType>) override {
    return std::make_unique<Monitor>(state);
  }

  const std::shared_ptr<State> state = std::make_shared<State>();

 private:
  class Monitor final : public PathMonitor {
   public:
    explicit Monitor(std::shared_ptr<State> state) : state_(std::move(state)) {}
    ~Monitor() override { state_->destroyed = true; }
    void setPathUpdateHandler(UpdateHandler handler) override {
      state_->handler = std::move(handler);
    }
    void start(DispatchQueue&) override {}
    void cancel() override { state_->cancelled = true; }

   private:
    const std::shared_ptr<State> state_;
  };
};

class SilentPathTest : public ActiveInterfaceTest {
 protected:
  SilentPathTest() {
    resolver_ = std::make_shared<ActiveInterfacePublicInfoResolver>(
        interfaces_, ActiveInterfacePublicInfoResolver::Environment{mute_, dispatch_.mainQueue()});
  }
  void update() {
    dispatch_.mainQueue().async([state = mute_.state] {
      const auto handler = state->handler;
      handler(pathOver({{.name = "en0", .type = PathInterfaceType::wifi}}));
    });
    dispatch_.runReady();
  }

  const Answer timeout_ = std::unexpected(make_error_code(PublicInfoResolverError::timeout));
  MutePaths mute_;
};

TEST_F(SilentPathTest, TimesOutAfterFiveSeconds) {
  ask(*resolver_);
  dispatch_.advance(5s - 1ns);
  EXPECT_TRUE(answers_.empty());
  EXPECT_FALSE(mute_.state->cancelled);
  dispatch_.advance(1ns);
  EXPECT_EQ(answers_, (std::vector{timeout_}));
  EXPECT_TRUE(mute_.state->cancelled);
  EXPECT_TRUE(mute_.state->destroyed);
}

TEST_F(SilentPathTest, AnUpdateJustInTimeIsTheOnlyCompletion) {
  ask(*resolver_);
  dispatch_.advance(5s - 1ns);
  update();
  dispatch_.advance(1h);
  EXPECT_EQ(answers_, (std::vector{interfaceOf(en0_, InterfaceType::wlan)}));
}

TEST_F(SilentPathTest, AnUpdateAfterTheTimeoutIsNotHeard) {
  ask(*resolver_);
  dispatch_.advance(5s);
  update();
  EXPECT_EQ(answers_, (std::vector{timeout_}));
}

TEST_F(SilentPathTest, ARepeatedUpdateIsNotHeard) {
  ask(*resolver_);
  dispatch_.runReady();
  update();
  update();
  EXPECT_EQ(answers_.size(), 1U);
}

TEST_F(SilentPathTest, ARequestDoesNotKeepItsResolver) {
  ask(*resolver_);
  dispatch_.runReady();
  const std::weak_ptr<ActiveInterfacePublicInfoResolver> weak = resolver_;
  resolver_.reset();
  EXPECT_TRUE(weak.expired());
}

TEST_F(SilentPathTest, AResolverDroppedMeanwhileTimesOutOnce) {
  ask(*resolver_);
  dispatch_.runReady();
  resolver_.reset();
  update();
  EXPECT_TRUE(answers_.empty());
  dispatch_.advance(1h);
  EXPECT_EQ(answers_, (std::vector{timeout_}));
}

TEST_F(SilentPathTest, TheFiveSecondsAreThoseOfEachRequest) {
  ask(*resolver_);
  dispatch_.advance(3s);
  ask(*resolver_);
  dispatch_.advance(2s);
  EXPECT_EQ(answers_.size(), 1U);
  dispatch_.advance(3s);
  EXPECT_EQ(answers_, (std::vector{timeout_, timeout_}));
}

TEST_F(ActiveInterfaceTest, OnTheMainQueueTheMonitorIsStartedAtOnce) {
  dispatch_.mainQueue().async([this] {
    ask(*resolver_);
    EXPECT_EQ(paths_.monitors().size(), 1U);
    EXPECT_TRUE(answers_.empty());
  });
  dispatch_.runReady();
  EXPECT_EQ(answers_.size(), 1U);
}

TEST_F(ActiveInterfaceTest, ACompletionMayDropTheResolverAndAskAnother) {
  const auto other = makeResolver();
  resolver_->resolve({interface}, [&](const Answer&) {
    resolver_.reset();
    ask(*other);
  });
  dispatch_.runReady();
  EXPECT_EQ(answers_.size(), 1U);
}

using ActiveInterfaceDeathTest = ActiveInterfaceTest;

TEST_F(ActiveInterfaceDeathTest, NeedsAnInterfaceResolver) {
  EXPECT_DEATH(ActiveInterfacePublicInfoResolver(nullptr, {paths_, dispatch_.mainQueue()}),
               "an active-interface resolver was made without an interface resolver");
}

}  // namespace
}  // namespace lanternfold
