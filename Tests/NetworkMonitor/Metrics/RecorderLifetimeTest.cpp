// How a recorder ends: wherever and whenever its last reference goes.
#include <optional>

#include "NetworkMonitor/Metrics/InMemoryConnectionMetricsStorage.h"
#include "Tests/NetworkMonitor/Metrics/RecorderFixture.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;
using enum ConnectionBandwidthClass;

using RecorderLifetimeTest = RecorderFixture;

TEST_F(RecorderLifetimeTest, ReleasedRecorderStopsSampling) {
  recorder->start();
  machine.dispatch.advance(130s);
  const std::weak_ptr watched = recorder;
  recorder.reset();
  EXPECT_TRUE(watched.expired());
  machine.dispatch.advance(1h);
  EXPECT_EQ(diary, "0 120 ");
  EXPECT_EQ(storage.use_count(), 1);
}

TEST_F(RecorderLifetimeTest, RecorderReleasedDuringASampleCompletesItAndIsGone) {
  const std::weak_ptr watched = recorder;
  duringReading = [this] { recorder.reset(); };
  recorder->start();
  machine.dispatch.advance(1h);
  EXPECT_EQ(diary, "0 ");
  EXPECT_TRUE(watched.expired());
  EXPECT_EQ(storage->diary, "lock en0.original en0.adjusted save unlock");
}

TEST_F(RecorderLifetimeTest, RecorderReleasedByItsOwnEventHandlerIsGone) {
  const std::weak_ptr watched = recorder;
  const Subscription subscription =
      recorder->eventsPublisher().subscribe([this](const Recorder::Event&) { recorder.reset(); });
  recorder->setInterval(1s);
  recorder->start();
  machine.dispatch.advance(500ms);
  makeBusy(high);
  machine.dispatch.advance(1h);
  EXPECT_EQ(diary, "0 1 ");
  EXPECT_TRUE(watched.expired());
}

TEST_F(RecorderLifetimeTest, LastReferenceMayGoOnTheRecorderQueue) {
  recorder->start();
  machine.dispatch.advance(0s);
  machine.recorderQueue().async([this] { recorder.reset(); });
  machine.dispatch.advance(1h);
  EXPECT_EQ(diary, "0 ");
  EXPECT_EQ(storage.use_count(), 1);
}

TEST_F(RecorderLifetimeTest, OutstandingCompletionOfAReleasedRecorderIsStillCalledOnce) {
  const std::weak_ptr watched = recorder;
  recorder->start();
  recorder->once([this](const Recorder::Metrics& outcome) { diary += textOf(outcome) + " "; });
  recorder.reset();
  machine.dispatch.advance(1h);
  EXPECT_TRUE(watched.expired());
  EXPECT_TRUE(diary == "0 en0 10/20 " || diary == "0 0 en0 10/20 ") << diary;
}

TEST(RecorderShutdownTest, QueuesThatGoFirstReleaseEverything) {
  const auto held = std::make_shared<int>(0);
  std::weak_ptr<Recorder> watched;
  std::optional<RecorderMachine> machine(std::in_place);
  {
    const auto recorder =
        machine->recorderOver(std::make_shared<InMemoryConnectionMetricsStorage>(machine->clock));
    watched = recorder;
    recorder->start();
    recorder->once([held](const Recorder::Metrics&) { FAIL() << "was called"; });
  }
  EXPECT_FALSE(watched.expired()) << "held by the sample that waits";
  machine.reset();
  EXPECT_TRUE(watched.expired());
  EXPECT_EQ(held.use_count(), 1);
}

}  // namespace
}  // namespace lanternfold
