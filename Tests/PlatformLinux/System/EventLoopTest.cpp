#include <future>
#include <pthread.h>

#include <asio/io_context.hpp>
#include <asio/steady_timer.hpp>

#include "PlatformLinux/System/EventLoop.h"

namespace lanternfold {
namespace {

TEST(EventLoopTest, PostedWorksRunInOrderOnTheLoopsThread) {
  EventLoop loop;
  std::string order;
  bool current = false;
  loop.post([&] { order += "a"; });
  loop.post([&] {
    order += "b";
    current = loop.isCurrent();
  });
  loop.runAndWait([&] { order += "c"; });

  EXPECT_EQ(order, "abc");
  EXPECT_TRUE(current);
  EXPECT_FALSE(loop.isCurrent());
}

TEST(EventLoopTest, RunAndWaitOnTheLoopsThreadRunsAtOnce) {
  EventLoop loop;
  std::string order;
  loop.runAndWait([&] {
    order += "(";
    loop.runAndWait([&] { order += "inner"; });
    order += ")";
  });
  EXPECT_EQ(order, "(inner)");
}

TEST(EventLoopTest, ThreadCarriesItsNameCutToWhatTheKernelKeeps) {
  EventLoop loop("a-name-that-is-far-too-long");
  char name[32] = {};
  loop.runAndWait([&name] { pthread_getname_np(pthread_self(), name, sizeof name); });
  EXPECT_STREQ(name, "a-name-that-is-");
}

TEST(EventLoopTest, AsioObjectsHangOnItsContext) {
  EventLoop loop;
  asio::steady_timer timer(loop.context(), std::chrono::milliseconds(1));
  std::promise<bool> fired;
  timer.async_wait([&](const std::error_code&) { fired.set_value(loop.isCurrent()); });
  EXPECT_TRUE(fired.get_future().get());
}

TEST(EventLoopTest, DestructionDestroysWaitingWork) {
  const auto held = std::make_shared<int>(0);
  std::function<void()> again;
  {
    EventLoop loop;
    asio::steady_timer timer(loop.context(), std::chrono::hours(1));
    timer.async_wait([held](const std::error_code&) {});
    // Appends itself until the loop ends, so that one is always waiting then.
    again = [&loop, &again, held] { loop.post(again); };
    loop.runAndWait([&again] { again(); });
  }
  again = nullptr;
  EXPECT_EQ(held.use_count(), 1);
}

TEST(EventLoopDeathTest, DestroyedByOneOfItsOwnHandlers) {
  EXPECT_DEATH(
      {
        auto loop = std::make_unique<EventLoop>();
        EventLoop& reference = *loop;
        reference.runAndWait([&loop] { loop.reset(); });
      },
      "an event loop was destroyed by one of its own handlers");
}

}  // namespace
}  // namespace lanternfold
