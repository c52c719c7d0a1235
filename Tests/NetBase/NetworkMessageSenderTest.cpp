#include <exception>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <asio/co_spawn.hpp>
#include <asio/detached.hpp>
#include <asio/execution_context.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "NetBase/NetworkMessageSender.h"
#include "NetBase/QueueExecutor.h"
#include "Tests/Support/FakeConnection.h"
#include "Tests/Support/SimulatedClock.h"
#include "Tests/Support/SimulatedDispatch.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

const std::error_code refused = std::make_error_code(std::errc::connection_refused);

class NetworkMessageSenderTest : public testing::Test {
 protected:
  /// An exchange that is not ended keeps itself and its connection.
  void TearDown() override {
    if (!sender_) return;
    cancel();
    run();
  }

  void make(std::optional<double> timeout = std::nullopt) {
    sender_ = std::make_unique<NetworkMessageSender>("question", connection_, timeout, queue_,
                                                     dispatch_.mainQueue());
  }
  /// As a caller does that awaits the outcome.
  void start() {
    asio::co_spawn(
        caller_,
        [](asio::awaitable<MessageResult> exchange, auto& outcomes,
           const DispatchQueue& main) -> asio::awaitable<void> {
          outcomes.push_back(co_await std::move(exchange));
          EXPECT_TRUE(main.isCurrent());
        }(sender_->start(), outcomes_, dispatch_.mainQueue()),
        asio::detached);
  }
  void cancel() { asio::co_spawn(caller_, sender_->cancel(), asio::detached); }
  /// Without letting time pass.
  void run() { dispatch_.runReady(); }
  void advance(std::chrono::nanoseconds duration) { dispatch_.advance(duration); }
  void startUntilReady() {
    start();
    run();
    connection_->becomeReady();
    run();
  }

  static MessageResult failure(std::error_code error) { return std::unexpected(error); }

  SimulatedClock clock_;
  SimulatedDispatch dispatch_{clock_};
  DispatchQueue& queue_ = dispatch_.serialQueue("exchange", QualityOfService::utility);
  std::shared_ptr<FakeConnection> connection_ = std::make_shared<FakeConnection>();
  asio::execution_context context_;
  QueueExecutor caller_{dispatch_.mainQueue(), context_};
  std::vector<MessageResult> outcomes_;
  std::unique_ptr<NetworkMessageSender> sender_;
};

TEST_F(NetworkMessageSenderTest, DeliversTheReplyAndWhoSentIt) {
  make();
  EXPECT_EQ(sender_->data(), "question");
  EXPECT_EQ(sender_->timeout(), std::nullopt);
  startUntilReady();
  EXPECT_THAT(connection_->sent(), ElementsAre("question"));
  EXPECT_FALSE(sender_->isComplete());
  EXPECT_THAT(outcomes_, IsEmpty());

  connection_->reply("answer");
  run();
  EXPECT_THAT(outcomes_, ElementsAre(MessageReply{"answer", "192.0.2.1:7"}));
  EXPECT_TRUE(sender_->isComplete());
}

TEST_F(NetworkMessageSenderTest, BeginsNothingBeforeItIsAwaited) {
  make();
  {
    const auto unused = sender_->start();
  }
  run();
  EXPECT_EQ(connection_->state(), ConnectionState::setup);
}

TEST_F(NetworkMessageSenderTest, SendsNothingBeforeTheConnectionIsReady) {
  make();
  start();
  run();
  EXPECT_EQ(connection_->state(), ConnectionState::preparing);
  EXPECT_THAT(connection_->sent(), IsEmpty());
}

TEST_F(NetworkMessageSenderTest, LetsTheConnectionGoAfterTheReply) {
  make();
  startUntilReady();
  connection_->reply("answer");
  run();
  EXPECT_EQ(connection_->state(), ConnectionState::cancelled);
  run();
  EXPECT_EQ(outcomes_.size(), 1U);
  const std::weak_ptr<FakeConnection> weak = connection_;
  connection_.reset();
  sender_.reset();
  EXPECT_TRUE(weak.expired());
}

TEST_F(NetworkMessageSenderTest, FailsForAReplyWithoutData) {
  make();
  startUntilReady();
  connection_->replyWithoutData();
  run();
  EXPECT_THAT(outcomes_, ElementsAre(failure(MessageSenderError::noData)));
  EXPECT_FALSE(sender_->isComplete());
}

TEST_F(NetworkMessageSenderTest, PassesTheConnectionsErrorOn) {
  make();
  start();
  run();
  connection_->fail(refused);
  run();
  EXPECT_THAT(outcomes_, ElementsAre(failure(refused)));
  EXPECT_FALSE(sender_->isComplete());
}

TEST_F(NetworkMessageSenderTest, PassesTheErrorOfReceivingOn) {
  make();
  startUntilReady();
  connection_->failToReceive(refused);
  run();
  EXPECT_THAT(outcomes_, ElementsAre(failure(refused)));
  EXPECT_EQ(connection_->state(), ConnectionState::cancelled);
  EXPECT_FALSE(sender_->isComplete());
}

TEST_F(NetworkMessageSenderTest, EndsWhenTheTimeLimitHasPassed) {
  make(1.5);
  EXPECT_EQ(sender_->timeout(), 1.5);
  startUntilReady();
  advance(1499ms);
  EXPECT_THAT(outcomes_, IsEmpty());
  advance(1ms);
  EXPECT_THAT(outcomes_, ElementsAre(failure(MessageSenderError::timeout)));
  EXPECT_EQ(connection_->state(), ConnectionState::cancelled);
  EXPECT_FALSE(sender_->isComplete());
}

TEST_F(NetworkMessageSenderTest, WaitsForTheTimeLimitAlsoBeforeTheConnectionIsReady) {
  make(2);
  start();
  advance(2s);
  EXPECT_THAT(outcomes_, ElementsAre(failure(MessageSenderError::timeout)));
}

TEST_F(NetworkMessageSenderTest, HasNoLimitWithoutATimeout) {
  make();
  startUntilReady();
  advance(24h * 365);
  EXPECT_THAT(outcomes_, IsEmpty());
  connection_->reply("late");
  run();
  EXPECT_EQ(outcomes_.size(), 1U);
}

TEST_F(NetworkMessageSenderTest, TakesLimitsThatAreNoTimes) {
  for (const double timeout : {0.0, -1.0, std::numeric_limits<double>::quiet_NaN(),
                               -std::numeric_limits<double>::infinity()}) {
    connection_ = std::make_shared<FakeConnection>();
    outcomes_.clear();
    make(timeout);
    start();
    run();
    EXPECT_THAT(outcomes_, ElementsAre(failure(MessageSenderError::timeout))) << timeout;
  }
  for (const double timeout : {1e300, std::numeric_limits<double>::infinity()}) {
    connection_ = std::make_shared<FakeConnection>();
    outcomes_.clear();
    make(timeout);
    startUntilReady();
    advance(24h * 365);
    EXPECT_EQ(outcomes_.size(), 0U) << timeout;
    cancel();
    run();
  }
}

TEST_F(NetworkMessageSenderTest, RunsTheConnectionOnItsQueue) {
  make();
  startUntilReady();
  EXPECT_EQ(connection_->startedOn(), &queue_);
}

TEST_F(NetworkMessageSenderTest, DoesNotFireAfterTheEnd) {
  make(1);
  startUntilReady();
  connection_->reply("answer");
  run();
  const int cancellations = connection_->cancellations();
  EXPECT_EQ(cancellations, 1);
  advance(10s);
  EXPECT_EQ(connection_->cancellations(), cancellations);
  EXPECT_THAT(outcomes_, ElementsAre(MessageReply{"answer", "192.0.2.1:7"}));
}

TEST_F(NetworkMessageSenderTest, IsCancelled) {
  make(10);
  startUntilReady();
  cancel();
  run();
  EXPECT_EQ(connection_->state(), ConnectionState::cancelled);
  EXPECT_THAT(outcomes_, ElementsAre(failure(MessageSenderError::cancelled)));
  EXPECT_FALSE(sender_->isComplete());
  const int cancellations = connection_->cancellations();
  advance(20s);
  EXPECT_EQ(outcomes_.size(), 1U);
  EXPECT_EQ(connection_->cancellations(), cancellations);
}

TEST_F(NetworkMessageSenderTest, ReportsWhatCameFirstOfTimeoutAndCancel) {
  make(1);
  startUntilReady();
  dispatch_.mainQueue().after(1s, [this] { cancel(); });
  advance(1s);
  EXPECT_THAT(outcomes_, ElementsAre(failure(MessageSenderError::timeout)));
}

TEST_F(NetworkMessageSenderTest, CancelledBeforeTheStartDoesNotBegin) {
  make();
  cancel();
  run();
  start();
  run();
  EXPECT_THAT(outcomes_, ElementsAre(failure(MessageSenderError::cancelled)));
}

// Nothing that comes after another outcome makes it complete.
TEST_F(NetworkMessageSenderTest, IsNotCompletedByALateReply) {
  make(1);
  startUntilReady();
  dispatch_.mainQueue().after(1s, [this] { connection_->reply("late"); });
  advance(1s);
  EXPECT_THAT(outcomes_, ElementsAre(failure(MessageSenderError::timeout)));
  EXPECT_FALSE(sender_->isComplete());
}

TEST_F(NetworkMessageSenderTest, TakesNoConnectionThatWasUsed) {
  connection_->start(queue_);
  make();
  start();
  run();
  EXPECT_THAT(outcomes_, ElementsAre(failure(MessageSenderError::genericFailure)));
}

TEST_F(NetworkMessageSenderTest, RunsOneExchange) {
  make();
  startUntilReady();
  start();
  run();
  EXPECT_THAT(outcomes_, ElementsAre(failure(MessageSenderError::genericFailure)));
  connection_->reply("answer");
  run();
  EXPECT_EQ(outcomes_.back(), (MessageReply{"answer", "192.0.2.1:7"}));
  start();
  run();
  EXPECT_EQ(outcomes_.back(), failure(MessageSenderError::genericFailure));
}

TEST_F(NetworkMessageSenderTest, FailsWhenSomebodyElseCancelsTheConnection) {
  make();
  startUntilReady();
  connection_->cancel();
  run();
  EXPECT_THAT(outcomes_, ElementsAre(failure(MessageSenderError::genericFailure)));
}

TEST_F(NetworkMessageSenderTest, GoesOnWhenTheSenderIsReleased) {
  make(1);
  startUntilReady();
  sender_.reset();
  connection_->reply("answer");
  run();
  EXPECT_THAT(outcomes_, ElementsAre(MessageReply{"answer", "192.0.2.1:7"}));
}

TEST_F(NetworkMessageSenderTest, EndsAtItsLimitWhenTheSenderIsReleased) {
  make(1);
  startUntilReady();
  sender_.reset();
  advance(1s);
  EXPECT_THAT(outcomes_, ElementsAre(failure(MessageSenderError::timeout)));
}

/// What came of an exchange to which everything happens at once, in an order that the seed draws.
class Race {
 public:
  explicit Race(std::uint64_t seed) : dispatch_(clock_, seed) {}

  std::vector<MessageResult> run() {
    sender_ = std::make_unique<NetworkMessageSender>("question", connection_, 1, queue("exchange"),
                                                     dispatch_.mainQueue());
    asio::co_spawn(
        caller_, sender_->start(),
        [this](const std::exception_ptr&, MessageResult result) { outcomes_.push_back(result); });
    dispatch_.runReady();
    connection_->becomeReady();
    dispatch_.runReady();
    happen("reply", [this] { connection_->reply("answer"); });
    happen("failure", [this] { connection_->fail(refused); });
    happen("cancel", [this] {
      if (sender_) asio::co_spawn(caller_, sender_->cancel(), asio::detached);
    });
    happen("release", [this] { sender_.reset(); });
    dispatch_.advance(10s);
    return outcomes_;
  }

 private:
  DispatchQueue& queue(std::string_view label) {
    return dispatch_.serialQueue(label, QualityOfService::utility);
  }
  /// When the time limit passes, too.
  void happen(std::string_view label, std::function<void()> event) {
    queue(label).after(1s, std::move(event));
  }

  SimulatedClock clock_;
  SimulatedDispatch dispatch_;
  asio::execution_context context_;
  QueueExecutor caller_{queue("caller"), context_};
  std::shared_ptr<FakeConnection> connection_ = std::make_shared<FakeConnection>();
  std::unique_ptr<NetworkMessageSender> sender_;
  std::vector<MessageResult> outcomes_;
};

TEST(RacingMessageSender, HasOneOutcomeAndEachOfThemCanWin) {
  std::map<std::string, int> wins;
  for (std::uint64_t seed = 1; seed <= 400; ++seed) {
    const std::vector<MessageResult> outcomes = Race(seed).run();
    ASSERT_EQ(outcomes.size(), 1U) << seed;
    const MessageResult& outcome = outcomes.front();
    ++wins[outcome ? outcome->data : outcome.error().message()];
  }
  const std::vector<std::string> possible{"answer", refused.message(),
                                          make_error_code(MessageSenderError::timeout).message(),
                                          make_error_code(MessageSenderError::cancelled).message()};
  for (const std::string& each : possible) EXPECT_GT(wins[each], 0) << each;
  EXPECT_EQ(wins.size(), possible.size());
}

TEST(MessageSenderError, HasASentenceForEachCase) {
  EXPECT_EQ(make_error_code(MessageSenderError::genericFailure).message(), "the exchange failed");
  EXPECT_EQ(make_error_code(MessageSenderError::noData).message(), "the reply has no data");
  EXPECT_EQ(make_error_code(MessageSenderError::timeout).message(), "the time limit has passed");
  EXPECT_EQ(make_error_code(MessageSenderError::cancelled).message(), "the exchange was cancelled");
}

}  // namespace
}  // namespace lanternfold
