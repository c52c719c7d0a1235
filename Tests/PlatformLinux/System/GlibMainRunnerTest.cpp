// What the dispatch contract does not say of a main queue that GLib's default main context runs.
#include <glib.h>
#include <thread>

#include "PlatformLinux/System/AsioDispatch.h"
#include "PlatformLinux/System/EventLoop.h"
#include "PlatformLinux/System/GlibMainRunner.h"

namespace lanternfold {
namespace {

class GlibMainRunnerTest : public testing::Test {
 protected:
  [[nodiscard]] DispatchQueue& main() { return dispatch->mainQueue(); }
  /// Rounds of the context until nothing is ready any more.
  static int roundsUntilIdle() {
    int rounds = 0;
    while (g_main_context_iteration(nullptr, FALSE) != FALSE) ++rounds;
    return rounds;
  }
  /// A source of another part of the program that is ready at once, once.
  void addOther(gint priority) {
    g_idle_add_full(
        priority,
        [](gpointer test) -> gboolean {
          static_cast<GlibMainRunnerTest*>(test)->order += "other ";
          return G_SOURCE_REMOVE;
        },
        this, nullptr);
  }
  void append(int count) {
    main().async([this, count] {
      order += "work ";
      if (count > 1) append(count - 1);
    });
  }

  std::string order;
  EventLoop loop;
  std::unique_ptr<AsioDispatch> dispatch =
      std::make_unique<AsioDispatch>(loop, std::make_unique<GlibMainRunner>());
};

TEST_F(GlibMainRunnerTest, InputAndDrawingComeBeforeWorks) {
  constexpr gint drawing = G_PRIORITY_HIGH_IDLE + 20;
  for (const gint priority : {G_PRIORITY_DEFAULT, drawing}) {
    order.clear();
    append(2);
    addOther(priority);
    roundsUntilIdle();
    EXPECT_EQ(order, "other work work ") << priority;
  }
}

TEST_F(GlibMainRunnerTest, WorksThatAppendOthersLetDrawingHaveItsTurn) {
  append(1000);
  for (int round = 0; round < 10; ++round) g_main_context_iteration(nullptr, FALSE);
  order.clear();
  addOther(G_PRIORITY_HIGH_IDLE + 20);
  g_main_context_iteration(nullptr, FALSE);
  EXPECT_EQ(order, "other ");
  roundsUntilIdle();
}

TEST_F(GlibMainRunnerTest, NothingIsReadyWhileNoWorkWaits) {
  append(3);
  EXPECT_EQ(roundsUntilIdle(), 3);
  EXPECT_FALSE(g_main_context_pending(nullptr));
}

TEST_F(GlibMainRunnerTest, AWorkFromAnotherThreadWakesTheContext) {
  std::thread other([this] {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    append(1);
  });
  g_main_context_iteration(nullptr, TRUE);
  other.join();
  EXPECT_EQ(order, "work ");
}

TEST_F(GlibMainRunnerTest, WorksThatWaitWhenItIsDestroyedDoNotRun) {
  append(1);
  dispatch.reset();
  EXPECT_EQ(roundsUntilIdle(), 0);
  EXPECT_EQ(order, "");
}

TEST_F(GlibMainRunnerTest, ItsDispatchCannotRunIt) {
  EXPECT_DEATH(dispatch->runMain(), "the main queue is run by another loop");
}

}  // namespace
}  // namespace lanternfold
