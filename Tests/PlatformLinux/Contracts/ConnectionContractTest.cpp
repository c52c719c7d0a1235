// What both sides of the connection's seam promise.
#include <vector>

#include <gmock/gmock.h>

#include "Tests/PlatformLinux/Contracts/ConnectionWorlds.h"

namespace lanternfold {
namespace {

using enum ConnectionState;
using testing::ElementsAre;
using testing::IsEmpty;
using Message = std::expected<std::optional<std::string>, std::error_code>;

template <typename World>
class ConnectionContract : public testing::Test {
 protected:
  [[nodiscard]] Connection& connection() { return *world_.connection(); }

  void listen() {
    connection().setStateHandler([this](ConnectionState state, std::error_code error) {
      EXPECT_TRUE(world_.queue().isCurrent());
      states_.push_back(state);
      error_ = error;
    });
    connection().receiveMessage([this](Message message) {
      EXPECT_TRUE(world_.queue().isCurrent());
      messages_.push_back(std::move(message));
    });
  }
  void start() {
    listen();
    connection().start(world_.queue());
  }
  void startUntilReady() {
    start();
    world_.accept();
    EXPECT_TRUE(runUntilState(ready));
  }
  bool runUntilState(ConnectionState state) {
    return world_.runUntil([&] { return !states_.empty() && states_.back() == state; });
  }
  bool runUntilMessage() {
    return world_.runUntil([&] { return !messages_.empty(); });
  }

  World world_;
  std::vector<ConnectionState> states_;
  std::vector<Message> messages_;
  std::error_code error_;
};

class WorldNames {
 public:
  template <typename World>
  static std::string GetName(int) {
    return std::is_same_v<World, LinuxConnectionWorld> ? "Linux" : "Fake";
  }
};

using Worlds = testing::Types<LinuxConnectionWorld, FakeConnectionWorld>;
TYPED_TEST_SUITE(ConnectionContract, Worlds, WorldNames);

TYPED_TEST(ConnectionContract, DoesNothingBeforeTheStart) {
  this->listen();
  this->world_.runOn();
  EXPECT_EQ(this->connection().state(), setup);
  EXPECT_EQ(this->connection().remoteEndpoint(), std::nullopt);
  EXPECT_THAT(this->states_, IsEmpty());
}

TYPED_TEST(ConnectionContract, TellsItsStatesInOrderAndNotInsideTheCall) {
  this->start();
  EXPECT_EQ(this->connection().state(), preparing);
  EXPECT_THAT(this->states_, IsEmpty());
  this->world_.accept();
  EXPECT_TRUE(this->runUntilState(ready));
  EXPECT_THAT(this->states_, ElementsAre(preparing, ready));
  EXPECT_EQ(this->connection().state(), ready);
  EXPECT_EQ(this->connection().remoteEndpoint(), this->world_.endpoint());
  EXPECT_EQ(this->error_, std::error_code());
}

TYPED_TEST(ConnectionContract, SendsNothingBeforeItIsReady) {
  this->connection().send("early");
  this->start();
  this->world_.accept();
  EXPECT_TRUE(this->runUntilState(ready));
  this->connection().send("question");
  EXPECT_EQ(this->world_.received(8), "question");
}

TYPED_TEST(ConnectionContract, SendsAndReceivesOneMessage) {
  this->startUntilReady();
  this->connection().send(std::string("one\0two", 7));
  EXPECT_EQ(this->world_.received(7), std::string("one\0two", 7));
  this->world_.reply("answer");
  EXPECT_TRUE(this->runUntilMessage());
  EXPECT_THAT(this->messages_, ElementsAre(Message("answer")));
}

TYPED_TEST(ConnectionContract, GivesNoneForAnEndWithoutBytes) {
  this->startUntilReady();
  this->world_.replyWithoutData();
  EXPECT_TRUE(this->runUntilMessage());
  EXPECT_THAT(this->messages_, ElementsAre(Message(std::nullopt)));
}

TYPED_TEST(ConnectionContract, FailsWithTheSystemsError) {
  this->world_.refuse();
  this->start();
  EXPECT_TRUE(this->runUntilState(failed));
  EXPECT_THAT(this->states_, ElementsAre(preparing, failed));
  EXPECT_EQ(this->error_, std::errc::connection_refused);
  this->connection().cancel();
  this->world_.runOn();
  EXPECT_EQ(this->connection().state(), failed);
  EXPECT_EQ(this->states_.size(), 2U);
}

TYPED_TEST(ConnectionContract, IsCancelledOnceAndThenSilent) {
  this->startUntilReady();
  this->connection().cancel();
  EXPECT_EQ(this->connection().state(), cancelled);
  EXPECT_TRUE(this->runUntilState(cancelled));
  EXPECT_EQ(this->error_, std::error_code());
  this->connection().cancel();
  this->connection().send("late");
  this->world_.runOn();
  EXPECT_THAT(this->states_, ElementsAre(preparing, ready, cancelled));
  EXPECT_THAT(this->messages_, IsEmpty());
}

TYPED_TEST(ConnectionContract, IsCancelledWhilePreparing) {
  this->start();
  this->connection().cancel();
  EXPECT_TRUE(this->runUntilState(cancelled));
  this->world_.runOn();
  EXPECT_EQ(this->connection().state(), cancelled);
  EXPECT_EQ(this->states_.back(), cancelled);
}

TYPED_TEST(ConnectionContract, CancelledBeforeTheStartSaysSo) {
  this->listen();
  this->connection().cancel();
  EXPECT_EQ(this->connection().state(), cancelled);
  this->world_.runOn();
  EXPECT_THAT(this->states_, IsEmpty());
  this->connection().start(this->world_.queue());
  EXPECT_TRUE(this->runUntilState(cancelled));
  EXPECT_THAT(this->states_, ElementsAre(cancelled));
}

TYPED_TEST(ConnectionContract, ReleasesItsHandlersAfterTheEnd) {
  const auto held = std::make_shared<int>();
  this->connection().setStateHandler([held](ConnectionState, std::error_code) {});
  this->connection().receiveMessage([held](const Message&) {});
  this->connection().start(this->world_.queue());
  this->connection().cancel();
  EXPECT_TRUE(this->world_.runUntil([&] { return held.use_count() == 1; }));
}

TYPED_TEST(ConnectionContract, MayBeReleasedAtAnyTime) {
  this->connection().receiveMessage([](const Message&) {});
  this->connection().start(this->world_.queue());
  this->world_.connection().reset();
  this->world_.runOn();
}

TYPED_TEST(ConnectionContract, StartedTwiceStopsTheProgram) {
  const auto startTwice = [this] {
    this->connection().start(this->world_.queue());
    this->connection().start(this->world_.queue());
  };
  EXPECT_DEATH(startTwice(), "a connection was started twice");
}

}  // namespace
}  // namespace lanternfold
