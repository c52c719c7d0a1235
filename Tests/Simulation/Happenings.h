// What happens in a simulated world: the faults and changes that it brings about, and what its
// programs are seen to do.
//
// Made by: the world and its observers. Read by: the log of a failing seed, and the counts that
// show that a long run really met everything.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace lanternfold::simulation {

enum class Happening {
  // Of the machine.
  machineBooted,
  wallClockWentBack,
  wallClockWentForward,
  wallClockWentBackDuringWait,
  interfaceCame,
  interfaceLeft,
  interfaceCameBack,
  mtuChanged,
  trafficChanged,
  countersJumped,
  counterWrapped,
  countersWrappedUnseen,
  readerFailed,
  // Of the disk.
  diskFilled,
  diskHasRoom,
  permissionLost,
  permissionGiven,
  diskSlowed,
  diskRecovered,
  writeRefused,
  slowerThanLease,
  dataFileCorrupted,
  dataFileDeleted,
  dataFileRestored,
  stalePastLock,
  staleFutureLock,
  staleTextLock,
  staleLockRemoved,
  // Of the programs.
  programStarted,
  programEnded,
  programKilled,
  killedInsideSave,
  killedHoldingLock,
  sampled,
  sampleFailed,
  lockTaken,
  lockTimedOut,
  lockContended,
  lockTakenOverExpired,
  twoHolders,
  disturbedSample,
  saved,
  saveFailed,
  rebootNoticed,
  clockStepTakenForReboot,
  classChanged,
  intervalSet,
  readByUser,
  recorderStopped,
  recorderStarted,
};

inline constexpr std::size_t happeningCount =
    static_cast<std::size_t>(Happening::recorderStarted) + 1;

/// The words of a log line, such as "the disk is full".
[[nodiscard]] std::string_view describe(Happening happening);

class HappeningCounts {
 public:
  void add(Happening happening) { ++counts_[static_cast<std::size_t>(happening)]; }
  void add(const HappeningCounts& other) {
    for (std::size_t index = 0; index < happeningCount; ++index) {
      counts_[index] += other.counts_[index];
    }
  }
  [[nodiscard]] std::uint64_t of(Happening happening) const {
    return counts_[static_cast<std::size_t>(happening)];
  }

 private:
  std::array<std::uint64_t, happeningCount> counts_{};
};

}  // namespace lanternfold::simulation
