#include <memory>
#include <string>

#include <asio/co_spawn.hpp>
#include <asio/detached.hpp>
#include <asio/execution_context.hpp>
#include <asio/post.hpp>
#include <asio/use_awaitable.hpp>
#include <gtest/gtest.h>

#include "NetBase/QueueExecutor.h"
#include "Tests/Support/SimulatedClock.h"
#include "Tests/Support/SimulatedDispatch.h"

namespace lanternfold {
namespace {

class QueueExecutorTest : public testing::Test {
 protected:
  SimulatedClock clock_;
  SimulatedDispatch dispatch_{clock_};
  DispatchQueue& queue_ = dispatch_.serialQueue("one", QualityOfService::utility);
  DispatchQueue& otherQueue_ = dispatch_.serialQueue("other", QualityOfService::utility);
  asio::execution_context context_;
  QueueExecutor executor_{queue_, context_};
  QueueExecutor other_{otherQueue_, context_};
};

TEST_F(QueueExecutorTest, RunsWorksInOrderOnTheQueueAndNotInsideTheCall) {
  std::string order;
  asio::post(executor_, [&] { order += queue_.isCurrent() ? "first " : "elsewhere "; });
  asio::post(executor_, [&] { order += "second "; });
  EXPECT_EQ(order, "");
  dispatch_.runReady();
  EXPECT_EQ(order, "first second ");
}

TEST_F(QueueExecutorTest, RunsWhatAWorkHandsOverAfterIt) {
  std::string order;
  asio::post(executor_, [&] {
    asio::post(executor_, [&] { order += "inner "; });
    order += "outer ";
  });
  dispatch_.runReady();
  EXPECT_EQ(order, "outer inner ");
}

TEST_F(QueueExecutorTest, TakesWorksThatCannotBeCopied) {
  int seen = 0;
  asio::post(executor_, [&, number = std::make_unique<int>(7)] { seen = *number; });
  dispatch_.runReady();
  EXPECT_EQ(seen, 7);
}

TEST_F(QueueExecutorTest, HasACoroutineGoOnWhereItWasBegun) {
  std::string places;
  const auto note = [&] {
    places += queue_.isCurrent() ? "one " : otherQueue_.isCurrent() ? "other " : "nowhere ";
  };
  asio::co_spawn(
      executor_,
      [&]() -> asio::awaitable<void> {
        note();
        co_await asio::co_spawn(
            other_,
            [&]() -> asio::awaitable<void> {
              note();
              co_return;
            },
            asio::use_awaitable);
        note();
      },
      asio::detached);
  EXPECT_EQ(places, "");
  dispatch_.runReady();
  EXPECT_EQ(places, "one other one ");
}

TEST_F(QueueExecutorTest, IsTheSameForTheSameQueue) {
  EXPECT_EQ(executor_, QueueExecutor(queue_, context_));
  EXPECT_NE(executor_, other_);
  EXPECT_EQ(&asio::query(executor_, asio::execution::context), &context_);
}

// Works that never run are let go of with their queue.
TEST(QueueExecutorEndTest, LetsGoOfWhatNeverRuns) {
  const auto held = std::make_shared<int>();
  asio::execution_context context;
  {
    SimulatedClock clock;
    SimulatedDispatch dispatch(clock);
    asio::post(QueueExecutor(dispatch.mainQueue(), context), [held] {});
    EXPECT_EQ(held.use_count(), 2);
  }
  EXPECT_EQ(held.use_count(), 1);
}

}  // namespace
}  // namespace lanternfold
