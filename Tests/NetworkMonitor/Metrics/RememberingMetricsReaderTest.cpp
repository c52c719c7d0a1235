#include <limits>
#include <system_error>
#include <utility>

#include <gtest/gtest.h>

#include "NetworkMonitor/Metrics/RememberingMetricsReader.h"
#include "Tests/Support/FakeConnectionMetricsReader.h"
#include "Tests/Support/FakeFileSystem.h"
#include "Tests/Support/RecordingDiagnosticLog.h"
#include "Tests/Support/SimulatedClock.h"
#include "Tests/Support/SimulatedDispatch.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;

ConnectionMetricsMap received(std::uint64_t bytes) {
  return ConnectionMetricsMap::of({{"en0", {.recvBytes = bytes}}});
}

class RememberingMetricsReaderTest : public testing::Test {
 protected:
  /// What a new walk reads; 0 for none.
  std::uint64_t walk() {
    reader_.beginWalk();
    return read();
  }
  std::uint64_t read() {
    const auto metrics = reader_.read();
    return metrics ? metrics->find("en0")->recvBytes : 0;
  }

  void failSamples(std::optional<ConnectionMetricsError> error) {
    recorded_->error = std::move(error);
  }

  /// Counts its samples, from 101 on.
  struct CountingReader final : ConnectionMetricsReader {
    std::optional<ConnectionMetricsError> error;
    int failures = std::numeric_limits<int>::max();  ///< reads that the error is for
    int samples = 0;

    bool is32bitCapped() const override { return false; }
    std::expected<ConnectionMetricsMap, ConnectionMetricsError> read() override {
      ++samples;
      if (error && failures-- > 0) return std::unexpected(*error);
      return received(100 + static_cast<std::uint64_t>(samples));
    }
  };

  SimulatedClock clock_;
  RecordingDiagnosticLog diagnostics_;
  std::shared_ptr<FakeConnectionMetricsReader> kernel_ =
      std::make_shared<FakeConnectionMetricsReader>();
  std::shared_ptr<CountingReader> recorded_ = std::make_shared<CountingReader>();
  RememberingMetricsReader reader_{
      RememberingMetricsReader::Recorded{
          .reader = recorded_, .explain = [](const auto& error) { return describe(error); }},
      kernel_,
      {.clock = clock_, .diagnostics = diagnostics_}};
};

const ConnectionMetricsError diskFull = MetricsSaveError{"the disk is full; make room"};

TEST_F(RememberingMetricsReaderTest, OneSampleServesAWholeWalk) {
  EXPECT_EQ(walk(), 101U);
  EXPECT_EQ(read(), 101U);
  clock_.advance(10s);
  EXPECT_EQ(read(), 101U) << "a long walk is one walk";
  EXPECT_EQ(recorded_->samples, 1);
  EXPECT_EQ(walk(), 102U);
}

TEST_F(RememberingMetricsReaderTest, WalksThatFollowCloselyHaveTheKernelsOwnCounters) {
  kernel_->setCounters(received(7));
  EXPECT_EQ(walk(), 101U);
  clock_.advance(RememberingMetricsReader::shortestPause - 1ns);
  EXPECT_EQ(walk(), 7U);
  EXPECT_EQ(read(), 7U);
  clock_.advance(1ns);
  EXPECT_EQ(walk(), 102U);
  EXPECT_EQ(diagnostics_.lines(), std::vector<std::string>{});
}

TEST_F(RememberingMetricsReaderTest, ASampleThatFailsIsSaidOnceAndTheKernelsCountersAreShown) {
  kernel_->setCounters(received(7));
  failSamples(diskFull);
  EXPECT_EQ(walk(), 7U);
  clock_.advance(RememberingMetricsReader::pauseAfterFailure);
  EXPECT_EQ(walk(), 7U);
  EXPECT_EQ(recorded_->samples, 2);
  EXPECT_EQ(diagnostics_.lines(), std::vector<std::string>{"Traffic is shown but not recorded: the "
                                                           "disk is full; make room"});
}

TEST_F(RememberingMetricsReaderTest, AFailureIsNotTriedAgainAtOnce) {
  kernel_->setCounters(received(7));
  failSamples(LockError{LockError::Case::lockTimeout, std::nullopt});
  EXPECT_EQ(walk(), 7U);
  failSamples(std::nullopt);
  clock_.advance(RememberingMetricsReader::pauseAfterFailure - 1ns);
  EXPECT_EQ(walk(), 7U);
  EXPECT_EQ(recorded_->samples, 1);
  clock_.advance(1ns);
  EXPECT_EQ(walk(), 102U);
}

// Several programs on one data folder once said "Traffic is shown but not recorded: there was no
// lock file to remove", although their samples were in the file.
TEST_F(RememberingMetricsReaderTest, ASampleThatLostOnlyItsLockIsNoFailure) {
  kernel_->setCounters(received(7));
  failSamples(LockError{LockError::Case::alreadyUnlocked, std::nullopt});
  EXPECT_EQ(walk(), 7U);
  failSamples(std::nullopt);
  clock_.advance(RememberingMetricsReader::shortestPause);
  EXPECT_EQ(walk(), 102U) << "tried again soon";
  EXPECT_EQ(diagnostics_.lines(), std::vector<std::string>{});
}

TEST_F(RememberingMetricsReaderTest, FailsWhenTheKernelCannotBeAskedEither) {
  failSamples(LockError{LockError::Case::lockTimeout, std::nullopt});
  kernel_->setFailing(true);
  reader_.beginWalk();
  EXPECT_EQ(reader_.read().error(),
            ConnectionMetricsError(ConnectionMetricsReaderError::failedGetIf));
}

TEST_F(RememberingMetricsReaderTest, WithoutAFolderTheKernelsCountersAreShown) {
  kernel_->setCounters(received(7));
  RememberingMetricsReader reader(std::unexpected("the disk is gone; bring it back"), kernel_,
                                  {.clock = clock_, .diagnostics = diagnostics_});
  EXPECT_EQ(reader.read(), received(7));
  EXPECT_EQ(
      diagnostics_.lines(),
      std::vector<std::string>{"Traffic is shown but not recorded: the disk is gone; bring it "
                               "back"});
}

TEST_F(RememberingMetricsReaderTest, ItsCountersNeedNoCarryingForward) {
  EXPECT_FALSE(reader_.is32bitCapped());
}

TEST(RememberingMetricsReaderDeathTest, CountersThatWrapCannotStandIn) {
  const SimulatedClock clock;
  RecordingDiagnosticLog diagnostics;
  const auto capped = std::make_shared<FakeConnectionMetricsReader>();
  capped->set32bitCapped(true);
  const auto build = [&] {
    const RememberingMetricsReader reader(std::unexpected("none"), capped,
                                          {.clock = clock, .diagnostics = diagnostics});
  };
  EXPECT_DEATH(build(), "32-bit counters were to stand in for adjusted ones");
}

// Five of 30,000 timelines of two extensions said that the lock file could not be written, since
// the other one had taken it away.
TEST_F(RememberingMetricsReaderTest, WhoLosesARaceForTheLockTakesItsSampleOnceMore) {
  kernel_->setCounters(received(7));
  failSamples(LockError{LockError::Case::lockFailed,
                        std::make_error_code(std::errc::no_such_file_or_directory)});
  recorded_->failures = 1;
  EXPECT_EQ(walk(), 102U);
  EXPECT_EQ(diagnostics_.lines(), std::vector<std::string>{});
  clock_.advance(RememberingMetricsReader::shortestPause);
  recorded_->failures = 2;
  EXPECT_EQ(walk(), 7U) << "no folder, rather than a race";
  EXPECT_EQ(diagnostics_.lines().size(), 1U);
}

class LeavingOutMetricsReaderTest : public RememberingMetricsReaderTest {
 protected:
  static ConnectionMetricsError held() {
    return LockError{LockError::Case::lockTimeout, std::nullopt};
  }
  std::uint64_t walk() {
    leavingOut_.beginWalk();
    const auto metrics = leavingOut_.read();
    return metrics ? metrics->find("en0")->recvBytes : 0;
  }

  RememberingMetricsReader leavingOut_{
      RememberingMetricsReader::Recorded{
          .reader = recorded_, .explain = [](const auto& error) { return describe(error); }},
      kernel_,
      {.clock = clock_, .diagnostics = diagnostics_, .whileLocked = WhileLocked::failure}};
};

TEST_F(LeavingOutMetricsReaderTest, AHeldLockFailsAllWalksOfARequestAfterOneWait) {
  kernel_->setCounters(received(7));
  failSamples(held());
  EXPECT_EQ(walk(), 0U);
  EXPECT_EQ(walk(), 0U);
  EXPECT_EQ(recorded_->samples, 1);
  EXPECT_EQ(diagnostics_.lines().size(), 1U);
  failSamples(std::nullopt);
  clock_.advance(RememberingMetricsReader::pauseAfterFailure);
  EXPECT_EQ(walk(), 102U);
}

/// Readers of one program over a storage whose lock stands in a file.
class HeldLockMemoryTest : public RememberingMetricsReaderTest {
 protected:
  HeldLockMemoryTest() {
    files_.makeFolder("/metrics");
    take();
    failSamples(LockError{LockError::Case::lockTimeout, std::nullopt});
  }

  /// Until a far future; the date is in seconds since 2001.
  void take() { EXPECT_TRUE(files_.replaceFile(lockFile_, "9000000000.0")); }
  bool walkOfAnother() {
    RememberingMetricsReader another{
        RememberingMetricsReader::Recorded{
            .reader = recorded_,
            .explain = [](const auto& error) { return describe(error); },
            .lock = std::make_shared<const FileLock>(
                FileLock::Environment{.files = files_, .clock = clock_, .dispatch = dispatch_},
                lockFile_)},
        kernel_,
        {.clock = clock_,
         .diagnostics = diagnostics_,
         .whileLocked = WhileLocked::failure,
         .heldLocks = locks_}};
    return another.read().has_value();
  }

  const std::filesystem::path lockFile_ = "/metrics/default.lock";
  FakeFileSystem files_{clock_};
  SimulatedDispatch dispatch_{clock_};
  const std::shared_ptr<HeldLockMemory> locks_ = std::make_shared<HeldLockMemory>();
};

// Twenty requests at once kept everybody waiting for ten seconds, half a second each.
TEST_F(HeldLockMemoryTest, WhatOneReaderWaitedForInVainTheOthersDoNotWaitForAgain) {
  for (int count = 0; count < 20; ++count) EXPECT_FALSE(walkOfAnother());
  EXPECT_EQ(recorded_->samples, 1);
  clock_.advance(HeldLockMemory::span);
  EXPECT_FALSE(walkOfAnother());
  EXPECT_EQ(recorded_->samples, 2);
}

// The request after that which had waited in vain did without adapters, although nobody held the
// lock any more.
TEST_F(HeldLockMemoryTest, ALockThatWasGivenUpIsNoLongerHeld) {
  EXPECT_FALSE(walkOfAnother());
  EXPECT_TRUE(files_.removeFile(lockFile_));
  failSamples(std::nullopt);
  EXPECT_TRUE(walkOfAnother());
}

TEST_F(LeavingOutMetricsReaderTest, WhatALockDoesNotExplainIsShownFromTheKernel) {
  kernel_->setCounters(received(7));
  failSamples(diskFull);
  EXPECT_EQ(walk(), 7U);
}

}  // namespace
}  // namespace lanternfold
