#include "Tests/Simulation/FaultScript.h"

#include <array>
#include <cstdio>
#include <optional>

#include "Tests/Simulation/Repetition.h"

namespace lanternfold::simulation {
namespace {

using std::chrono::hours;
using std::chrono::milliseconds;
using std::chrono::minutes;
using std::chrono::seconds;

std::string lockText(std::chrono::system_clock::time_point expiry) {
  constexpr std::chrono::sys_seconds epoch =
      std::chrono::sys_days(std::chrono::year(2001) / std::chrono::January / 1);
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%.8f",
                std::chrono::duration<double>(expiry - epoch).count());
  return text.data();
}

}  // namespace

FaultScript::FaultScript(Installation& installation, const Profile& profile)
    : installation_(installation), run_(installation.run) {
  run_.clock.setSleeper([this, steps = profile.stepsClock](std::chrono::nanoseconds duration) {
    sleepOfProgram(duration, steps);
  });
  faultsOfDisk(profile);
  if (profile.stepsClock) repeat(run_, hours(60), [this] { stepClock(); });
  if (profile.failsReader) {
    repeat(run_, hours(50), [this] {
      installation_.readerFails = true;
      during(minutes(40), [this] { installation_.readerFails = false; });
    });
  }
}

void FaultScript::faultsOfDisk(const Profile& profile) {
  if (profile.fillsDisk) repeat(run_, hours(60), [this] { fillDisk(); });
  if (profile.losesPermission) repeat(run_, hours(70), [this] { losePermission(); });
  if (profile.slowsDisk) repeat(run_, hours(70), [this] { slowDisk(); });
  if (profile.leavesLocks) repeat(run_, hours(60), [this] { leaveLock(); });
  if (profile.tampersWithData && profile.storage == StorageKind::file) {
    repeat(run_, hours(70), [this] { tamper(); });
    repeat(run_, hours(30), [this] {
      olderCopy_ = installation_.disk.files.bytes(installation_.disk.paths.data).value_or("");
    });
  }
}

void FaultScript::fillDisk() {
  run_.log.add(Happening::diskFilled);
  installation_.disk.setFull(drawExtent());
  installation_.defaults->isFailing = true;
  during(hours(4), [this] {
    run_.log.add(Happening::diskHasRoom);
    installation_.disk.setFull(Disk::Extent::nothing);
    installation_.defaults->isFailing = false;
  });
}

void FaultScript::losePermission() {
  run_.log.add(Happening::permissionLost);
  installation_.disk.setForbidden(drawExtent());
  ++installation_.faultsOfReading;
  during(hours(4), [this] {
    run_.log.add(Happening::permissionGiven);
    installation_.disk.setForbidden(Disk::Extent::nothing);
  });
}

void FaultScript::slowDisk() {
  constexpr std::array slownesses{milliseconds(20), milliseconds(200), milliseconds(1500)};
  const milliseconds slowness = run_.random.oneOf(slownesses);
  run_.log.add(Happening::diskSlowed, 0, slowness.count());
  installation_.disk.setSlowness(slowness);
  during(hours(1), [this] {
    run_.log.add(Happening::diskRecovered);
    installation_.disk.setSlowness({});
  });
}

void FaultScript::tamper() {
  Disk& disk = installation_.disk;
  const auto bytes = disk.files.bytes(disk.paths.data);
  ++installation_.faultsOfReading;
  switch (run_.random.below(5)) {
    case 0:
      run_.log.add(Happening::dataFileDeleted);
      return disk.tamper(std::nullopt);
    case 1:
      return restoreOlderCopy();
    case 2:
      run_.log.add(Happening::dataFileCorrupted, 0, 0, "another shape");
      return disk.tamper(R"({"0": {"en0": {}}})");
    case 3:
      run_.log.add(Happening::dataFileCorrupted, 0, 0, "empty");
      return disk.tamper("");
    default:
      if (!bytes || bytes->size() < 2) return;
      run_.log.add(Happening::dataFileCorrupted, 0, 0, "cut short");
      return disk.tamper(bytes->substr(0, run_.random.between(1, bytes->size() - 1)));
  }
}

void FaultScript::restoreOlderCopy() {
  if (olderCopy_.empty()) return;
  run_.log.add(Happening::dataFileRestored);
  Disk& disk = installation_.disk;
  disk.tamper(olderCopy_);
  // A copy may keep the date of the original.
  if (run_.random.chance(0.5)) {
    disk.files.setModificationDate(disk.paths.data,
                                   run_.clock.now() - run_.random.between(seconds(1), hours(48)));
  }
}

void FaultScript::leaveLock() {
  Disk& disk = installation_.disk;
  disk.setUser(nullptr);
  switch (run_.random.below(3)) {
    case 0:
      run_.log.add(Happening::stalePastLock);
      return disk.files.putFile(disk.paths.lock, lockText(run_.clock.now() - hours(5)));
    case 1:
      run_.log.add(Happening::staleTextLock);
      return disk.files.putFile(disk.paths.lock, run_.random.chance(0.5) ? "" : "locked by me");
    default:
      break;
  }
  run_.log.add(Happening::staleFutureLock);
  disk.files.putFile(disk.paths.lock, "31525200000.00000000");  // in the year 3000
  during(hours(3), [this, &disk] {
    run_.log.add(Happening::staleLockRemoved);
    disk.setUser(nullptr);
    disk.files.erase(disk.paths.lock);
  });
}

void FaultScript::stepClock() {
  constexpr std::array<std::chrono::nanoseconds, 4> spans{seconds(2), minutes(3), hours(2),
                                                          hours(72)};
  const auto step = run_.random.between(seconds(1), run_.random.oneOf(spans));
  if (run_.random.chance(0.5)) {
    run_.log.add(Happening::wallClockWentBack, 0, step.count());
    stepBack(step);
  } else {
    run_.log.add(Happening::wallClockWentForward, 0, step.count());
    run_.clock.stepWallClock(step);
  }
}

void FaultScript::stepBack(std::chrono::nanoseconds step) {
  run_.clock.stepWallClock(-step);
  // A time service sets it right in the end, mostly.
  if (run_.random.chance(0.3)) return;
  during(hours(8), [this, step] {
    run_.log.add(Happening::wallClockWentForward, 0, step.count());
    run_.clock.stepWallClock(step);
  });
}

void FaultScript::sleepOfProgram(std::chrono::nanoseconds duration, bool stepsClock) {
  if (stepsClock && run_.random.chance(0.002)) {
    run_.log.add(Happening::wallClockWentBackDuringWait, run_.running->number());
    stepBack(run_.random.between(seconds(1), hours(3)));
  }
  run_.running->waitUntil(run_.clock.steadyNow() + duration);
}

void FaultScript::during(std::chrono::nanoseconds longest, std::function<void()> end) {
  run_.scheduler.after(run_.random.between(seconds(20), longest), std::move(end));
}

Disk::Extent FaultScript::drawExtent() {
  constexpr std::array extents{Disk::Extent::dataFile, Disk::Extent::lockFile,
                               Disk::Extent::everything};
  return run_.random.oneOf(extents);
}

}  // namespace lanternfold::simulation
