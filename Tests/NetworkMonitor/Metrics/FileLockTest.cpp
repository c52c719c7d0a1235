// The lock between programs: what it does to its file, step by step, and how long it waits.
#include <cmath>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "NetworkMonitor/Metrics/FileLock.h"
#include "NetworkMonitor/Metrics/LockFileText.h"
#include "Tests/Support/FakeFileSystem.h"
#include "Tests/Support/SimulatedClock.h"
#include "Tests/Support/SimulatedDispatch.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;
using Case = LockError::Case;
using testing::IsEmpty;

const std::filesystem::path url = "/data/some.lock";

class FileLockTest : public testing::Test {
 protected:
  void SetUp() override { disk_.makeFolder("/data"); }

  void putLock(std::chrono::nanoseconds lapsesIn) {
    disk_.putFile(url, encodeLockFileText(clock_.now() + lapsesIn));
  }

  /// How long `lock` took, on the steady clock.
  std::chrono::nanoseconds waited(std::chrono::duration<double> timeout,
                                  const std::expected<void, LockError>& expected) {
    const auto begin = clock_.steadyNow();
    EXPECT_EQ(lock_.lock(timeout), expected);
    return clock_.steadyNow() - begin;
  }

  static std::expected<void, LockError> failed(Case value,
                                               std::optional<std::errc> underlying = std::nullopt) {
    LockError error{.value = value, .underlying = std::nullopt};
    if (underlying) error.underlying = std::make_error_code(*underlying);
    return std::unexpected(error);
  }

  SimulatedClock clock_;
  SimulatedDispatch dispatch_{clock_};
  FakeFileSystem disk_{clock_};
  const FileLock::Environment environment_{.files = disk_, .clock = clock_, .dispatch = dispatch_};
  FileLock lock_{environment_, url};
};

TEST_F(FileLockTest, IsAValueOfTheUrl) {
  EXPECT_EQ(lock_.url(), url);
  ASSERT_TRUE(lock_.lock());
  FileLock copy = lock_;
  EXPECT_TRUE(copy.isLocked());
  EXPECT_TRUE(copy.unlock());
  EXPECT_FALSE(lock_.isLocked());
}

TEST_F(FileLockTest, IsFreeWithoutAFile) { EXPECT_FALSE(lock_.isLocked()); }

TEST_F(FileLockTest, WritesItsDeadlineAsItsLease) {
  ASSERT_TRUE(lock_.lock());
  EXPECT_EQ(disk_.bytes(url), "725760000.50000000");
  EXPECT_TRUE(lock_.isLocked());
}

TEST_F(FileLockTest, LapsesAtItsDeadline) {
  ASSERT_TRUE(lock_.lock(2s));
  clock_.advance(2s - 1us);
  EXPECT_TRUE(lock_.isLocked());
  clock_.advance(1us);
  EXPECT_FALSE(lock_.isLocked());
}

TEST_F(FileLockTest, LeaseLosesTheTimeSpentWaiting) {
  putLock(330ms);
  EXPECT_EQ(waited(500ms, {}), 350ms);
  EXPECT_EQ(disk_.bytes(url), "725760000.50000000");
  clock_.advance(150ms);
  EXPECT_FALSE(lock_.isLocked());
}

TEST_F(FileLockTest, GivesTheFileUpWhenUnlocked) {
  ASSERT_TRUE(lock_.lock());
  EXPECT_TRUE(lock_.unlock());
  EXPECT_FALSE(lock_.isLocked());
  EXPECT_THAT(disk_.paths("/data"), IsEmpty());
}

TEST_F(FileLockTest, WithATimeInThePastCountsAsFree) {
  putLock(-1s);
  EXPECT_FALSE(lock_.isLocked());
  EXPECT_EQ(waited(500ms, {}), 0ns);
  EXPECT_EQ(disk_.bytes(url), "725760000.50000000");
}

TEST_F(FileLockTest, WithTheTimeOfNowCountsAsFree) {
  putLock(0s);
  EXPECT_FALSE(lock_.isLocked());
}

TEST_F(FileLockTest, WithTextThatIsNotANumberCountsAsFree) {
  for (const char* text : {"", "taken", "nan", "inf", "7e", "725846400,5", "9999999999\n"}) {
    disk_.putFile(url, text);
    EXPECT_FALSE(lock_.isLocked()) << text;
    EXPECT_EQ(waited(500ms, {}), 0ns) << text;
    EXPECT_TRUE(lock_.unlock());
  }
}

TEST_F(FileLockTest, ThatIsNotUtf8CountsAsFree) {
  disk_.putFile(url, "9999999999\xFF");
  EXPECT_FALSE(lock_.isLocked());
}

TEST_F(FileLockTest, ThatCannotBeReadCountsAsFree) {
  putLock(1h);
  disk_.denyReading(url);
  EXPECT_FALSE(lock_.isLocked());
  EXPECT_EQ(waited(500ms, {}), 0ns);
}

TEST_F(FileLockTest, OfAnySizeIsReadInPartOnly) {
  disk_.putFile(url, std::string(4096, '9'));
  EXPECT_TRUE(lock_.isLocked());
  disk_.putFile(url, std::string(4097, '9'));
  EXPECT_FALSE(lock_.isLocked());
}

TEST_F(FileLockTest, WithATimeInTheYear3000StaysTaken) {
  disk_.putFile(url, "31525372800.00000000");
  EXPECT_EQ(waited(500ms, failed(Case::lockTimeout)), 550ms);
  clock_.advance(std::chrono::years(200));
  EXPECT_TRUE(lock_.isLocked());
  EXPECT_EQ(disk_.bytes(url), "31525372800.00000000");
}

TEST_F(FileLockTest, LockWithATimeoutOfZeroFailsWithoutTouchingTheFile) {
  putLock(-1s);
  const std::size_t steps = disk_.stepCount();
  EXPECT_EQ(waited(0s, failed(Case::lockTimeout)), 0ns);
  EXPECT_EQ(waited(-1s, failed(Case::lockTimeout)), 0ns);
  EXPECT_EQ(lock_.lock(std::chrono::duration<double>(std::nan(""))), failed(Case::lockTimeout));
  EXPECT_EQ(lock_.lock(std::chrono::duration<double>(1e-10)), failed(Case::lockTimeout));
  EXPECT_EQ(disk_.stepCount(), steps);
}

TEST_F(FileLockTest, LockWithAnEndlessTimeoutHoldsAsLongAsTheClockCanName) {
  ASSERT_TRUE(lock_.lock(std::chrono::duration<double>(std::numeric_limits<double>::infinity())));
  EXPECT_EQ(disk_.bytes(url), encodeLockFileText(std::chrono::system_clock::time_point::max()));
  EXPECT_TRUE(lock_.isLocked());
}

TEST_F(FileLockTest, UnlockWithoutALockFileFailsWithAlreadyUnlocked) {
  EXPECT_EQ(lock_.unlock(), failed(Case::alreadyUnlocked));
}

TEST_F(FileLockTest, UnlockTakesAwayALapsedLockAndAnotherHoldersToo) {
  putLock(-1h);
  EXPECT_TRUE(lock_.unlock());
  putLock(1h);
  EXPECT_TRUE(lock_.unlock());
  EXPECT_THAT(disk_.paths("/data"), IsEmpty());
}

TEST_F(FileLockTest, WaitsInStepsOf50MillisecondsUntilTheTimeout) {
  putLock(1h);
  std::vector<std::chrono::nanoseconds> looks;
  const auto begin = clock_.steadyNow();
  disk_.beforeStep([&](FileStep step, const auto&) -> FakeFileSystem::Verdict {
    if (step == FileStep::openForReading) looks.push_back(clock_.steadyNow() - begin);
    return std::nullopt;
  });
  // At 200 ms the deadline is reached and not yet passed: the lock is looked at once more.
  EXPECT_EQ(waited(200ms, failed(Case::lockTimeout)), 250ms);
  EXPECT_THAT(looks, testing::ElementsAre(0ms, 50ms, 100ms, 150ms, 200ms));
}

TEST_F(FileLockTest, TakesALockThatIsGivenUpWhileItWaits) {
  putLock(1h);
  disk_.beforeStep([&, looks = 0](FileStep step, const auto&) mutable -> FakeFileSystem::Verdict {
    if (step == FileStep::openForReading && ++looks == 4) disk_.erase(url);
    return std::nullopt;
  });
  EXPECT_EQ(waited(500ms, {}), 150ms);
}

TEST_F(FileLockTest, DoesNotWaitLongerWhenTheWallClockIsSetBack) {
  putLock(1h);
  disk_.beforeStep([&, looks = 0](FileStep, const auto&) mutable -> FakeFileSystem::Verdict {
    if (++looks == 3) clock_.stepWallClock(-24h);
    return std::nullopt;
  });
  EXPECT_EQ(waited(500ms, failed(Case::lockTimeout)), 550ms);
}

TEST_F(FileLockTest, GivesUpAtOnceWhenTheWallClockIsSetAheadOfTheDeadline) {
  putLock(24h);
  disk_.beforeStep([&, looks = 0](FileStep, const auto&) mutable -> FakeFileSystem::Verdict {
    if (++looks == 1) clock_.stepWallClock(1h);
    return std::nullopt;
  });
  EXPECT_EQ(waited(500ms, failed(Case::lockTimeout)), 50ms);
}

TEST_F(FileLockTest, ACrashedHolderBlocksForItsLeaseOnly) {
  ASSERT_TRUE(lock_.lock());
  FileLock other(environment_, url);
  EXPECT_EQ(waited(600ms, {}), 500ms);
}

TEST_F(FileLockTest, OnAFolderThatMayNotBeWrittenToFailsWithoutAnUnderlyingError) {
  disk_.denyWriting("/data");
  EXPECT_EQ(lock_.lock(), failed(Case::lockFailed));
  disk_.erase("/data");
  EXPECT_EQ(lock_.lock(), failed(Case::lockFailed));
}

TEST_F(FileLockTest, ThatCannotBeRemovedFailsWithTheError) {
  putLock(-1h);
  disk_.denyWriting("/data");
  EXPECT_EQ(lock_.lock(), failed(Case::lockFailed, std::errc::permission_denied));
  EXPECT_EQ(lock_.unlock(), failed(Case::unlockFailed, std::errc::permission_denied));
}

TEST_F(FileLockTest, WithAFolderInItsPlaceFailsAndLeavesIt) {
  disk_.makeFolder(url / "precious");
  EXPECT_FALSE(lock_.isLocked());
  EXPECT_EQ(lock_.lock(), failed(Case::lockFailed, std::errc::is_a_directory));
  EXPECT_EQ(lock_.unlock(), failed(Case::unlockFailed, std::errc::is_a_directory));
  EXPECT_EQ(disk_.paths(url).size(), 1U);
}

TEST_F(FileLockTest, OnAFullDiskFailsWithTheErrorAndStaysFree) {
  disk_.setFreeBytes(3);
  EXPECT_EQ(lock_.lock(), failed(Case::lockFailed, std::errc::no_space_on_device));
  EXPECT_FALSE(lock_.isLocked());
}

/// What the lock says when the step fails that comes after so many; the last one takes no fault.
TEST_F(FileLockTest, FailingAtAnyStepReportsItAndLeavesTheLockFreeOrLapsing) {
  const std::vector<std::expected<void, LockError>> verdicts{
      {},                                             // looked at: counts as free
      {},                                             // the same, when its bytes are read
      {},                                             // looked for: counts as not there
      failed(Case::lockFailed, std::errc::io_error),  // removed
      failed(Case::lockFailed),                       // created
      failed(Case::lockFailed, std::errc::io_error),  // opened
      failed(Case::lockFailed, std::errc::io_error),  // written
      failed(Case::lockFailed, std::errc::io_error),  // the rest written
      failed(Case::lockFailed, std::errc::io_error),  // synchronised
      {},
  };
  for (std::size_t step = 0; step < verdicts.size(); ++step) {
    SCOPED_TRACE(step);
    putLock(-1s);
    disk_.failStep(step, std::errc::io_error);
    EXPECT_EQ(lock_.lock(), verdicts[step]);
    clock_.advance(500ms);
    EXPECT_FALSE(lock_.isLocked());
  }
}

TEST_F(FileLockTest, CrashingAtAnyStepBlocksTheNextHolderForTheLeaseAtMost) {
  for (std::size_t step = 0; step < 9; ++step) {
    SCOPED_TRACE(step);
    putLock(-1s);
    disk_.crashAtStep(step);
    EXPECT_FALSE(lock_.lock());
    disk_.restart();
    EXPECT_LE(waited(600ms, {}), 500ms);
    disk_.erase(url);
  }
}

TEST_F(FileLockTest, TwoThatFindTheSameLapsedLockBothTakeIt) {
  putLock(-1s);
  FileLock other(environment_, url);
  disk_.beforeStep([&](FileStep step, const auto&) -> FakeFileSystem::Verdict {
    // The other one has removed it between this one's look and removal.
    if (step == FileStep::remove) disk_.erase(url);
    return std::nullopt;
  });
  EXPECT_TRUE(lock_.lock());
}

TEST_F(FileLockTest, HasAQueueOfWorkThatAUserWaitsForFromItsFirstUseOn) {
  constexpr std::string_view label = "net.quernaple.NetworkMonitor.FileLock";
  EXPECT_EQ(dispatch_.qualityOf(label), std::nullopt);
  EXPECT_TRUE(lock_.lock());
  EXPECT_EQ(dispatch_.qualityOf(label), QualityOfService::userInitiated);
}

TEST_F(FileLockTest, LooksAndWritesOnTheQueueOfFileLocksAndSleepsOffIt) {
  auto& queue = dispatch_.serialQueue("net.quernaple.NetworkMonitor.FileLock",
                                      QualityOfService::userInitiated);
  putLock(100ms);
  std::size_t steps = 0;
  disk_.beforeStep([&](FileStep, const auto&) -> FakeFileSystem::Verdict {
    ++steps;
    EXPECT_TRUE(queue.isCurrent());
    return std::nullopt;
  });
  clock_.setSleeper([&](std::chrono::nanoseconds duration) {
    EXPECT_FALSE(queue.isCurrent());
    clock_.advance(duration);
  });
  EXPECT_TRUE(lock_.lock());
  EXPECT_TRUE(lock_.unlock());
  EXPECT_GT(steps, 8U);
}

TEST_F(FileLockTest, FailsWhileTheQueuesAreBeingDestroyed) {
  struct Late {
    explicit Late(FileLock& lock) : late(lock) {}
    Late(const Late&) = delete;
    Late& operator=(const Late&) = delete;
    ~Late() {
      EXPECT_EQ(late.lock(), failed(Case::lockFailed));
      EXPECT_EQ(late.unlock(), failed(Case::unlockFailed));
    }
    FileLock& late;
  };
  auto dispatch = std::make_unique<SimulatedDispatch>(clock_);
  FileLock lock({.files = disk_, .clock = clock_, .dispatch = *dispatch}, url);
  dispatch->mainQueue().async([late = std::make_unique<Late>(lock)] {});
  dispatch.reset();
  EXPECT_THAT(disk_.paths("/data"), IsEmpty());
}

class FileLockPerformTest : public FileLockTest {
 protected:
  using Result = std::expected<void, FileLock::PerformError<std::string>>;

  Result perform(FileLock::OnTimeout onTimeout, std::expected<void, std::string> outcome = {}) {
    return lock_.perform(onTimeout, 500ms, [this, outcome] {
      ++runs_;
      EXPECT_TRUE(lock_.isLocked());
      return outcome;
    });
  }
  static Result lockFailure(Case value) {
    return std::unexpected(FileLock::PerformError<std::string>(LockError{.value = value}));
  }

  int runs_ = 0;
};

TEST_F(FileLockPerformTest, RunsTheActionUnderTheLockAndGivesItUp) {
  EXPECT_EQ(perform(FileLock::OnTimeout::fail), Result{});
  EXPECT_EQ(runs_, 1);
  EXPECT_THAT(disk_.paths("/data"), IsEmpty());
}

TEST_F(FileLockPerformTest, PassesTheActionsErrorOnAfterUnlocking) {
  EXPECT_EQ(perform(FileLock::OnTimeout::skip, std::unexpected("it rained")),
            Result(std::unexpected(FileLock::PerformError<std::string>("it rained"))));
  EXPECT_THAT(disk_.paths("/data"), IsEmpty());
}

TEST_F(FileLockPerformTest, PassesATimeoutOnUnlessItIsToBeSilent) {
  putLock(1h);
  EXPECT_EQ(perform(FileLock::OnTimeout::fail), lockFailure(Case::lockTimeout));
  EXPECT_EQ(perform(FileLock::OnTimeout::skip), Result{});
  EXPECT_EQ(runs_, 0);
  EXPECT_TRUE(disk_.bytes(url));
}

TEST_F(FileLockPerformTest, PassesAnyOtherLockErrorOnEvenWhenSilent) {
  disk_.denyWriting("/data");
  EXPECT_EQ(perform(FileLock::OnTimeout::skip), lockFailure(Case::lockFailed));
  EXPECT_EQ(runs_, 0);
}

TEST_F(FileLockPerformTest, IgnoresThatTheLockCannotBeGivenUp) {
  const auto result = lock_.perform(FileLock::OnTimeout::fail, 500ms, [this] {
    disk_.erase(url);
    return std::expected<void, std::string>{};
  });
  EXPECT_EQ(result, Result{});
}

TEST_F(FileLockPerformTest, GivesTheLockUpWhenTheActionThrows) {
  EXPECT_THROW(static_cast<void>(lock_.perform(
                   FileLock::OnTimeout::fail, 500ms,
                   []() -> std::expected<void, std::string> { throw std::bad_alloc(); })),
               std::bad_alloc);
  EXPECT_THAT(disk_.paths("/data"), IsEmpty());
}

}  // namespace
}  // namespace lanternfold
