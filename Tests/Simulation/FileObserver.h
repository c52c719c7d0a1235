// Watches a data file through the operations of the programs that share it, and knows what has to
// stand in it after every sample.
//
// Strictly, a save holds what the file held, brought forward by the sample's own reading. That
// needs that nobody else wrote between the program's lock and its save. Where somebody did (two
// programs looked at a free lock at once, a step outlasted its lease, the wall clock stepped) or
// where the disk refused a look, every interface still has a pair of records that stood in the file
// before, or one that follows from such records and the reading: nothing is torn, invented or
// counted twice, and the next sample catches up, because both records went back together.
#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <expected>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "Platform/FileSystem.h"
#include "Tests/Simulation/ExpectedMetrics.h"
#include "Tests/Simulation/LockObserver.h"
#include "Tests/Simulation/SampleOutcome.h"
#include "Tests/Simulation/Turn.h"

namespace lanternfold::simulation {

class FileObserver {
 public:
  using WallTime = std::chrono::system_clock::time_point;

  FileObserver(RunContext& run, LockObserver& lock, Counting counting)
      : run_(run), lock_(lock), counting_(counting) {}

  // Told by the programs' file systems and readers.

  void lockTaken(const Turn& program);
  void bootDateRead(const Turn& program, std::optional<WallTime> date);
  void lookedUp(const Turn& program,
                const std::expected<FileAttributes, std::error_code>& attributes);
  void loaded(const Turn& program, const std::expected<FileContents, std::error_code>& found);
  void countersRead(const Turn& program, std::shared_ptr<const MachineReading> reading);
  /// A save ends before it began: the file that stands there could not be kept aside.
  void keepingAsideFailed(const Turn& program);
  /// A save begins: everything that the step registers is in `bytes`.
  void saves(const Turn& program, std::string_view bytes);
  /// The new file stands in its place.
  void replaced(const Turn& program);
  void saveEnded(const Turn& program,
                 const std::expected<FileAttributes, std::error_code>& attributes);
  void unlocked(const Turn& program, bool succeeded);
  /// A step has ended without giving the lock back, or without getting it.
  void abandoned(const Turn& program);
  void ended(const Turn& program) { states_.erase(program.number()); }

  /// Somebody else than a program has put, changed or removed the file.
  void tamperedWith(std::optional<std::string> bytes);

  // For who compares a recorder with what it has to be.

  /// How the steps ended that the program has taken since this was asked last, in order. Asked at
  /// the latest when the program waits for its next work, before the lock's observer is told so.
  [[nodiscard]] std::vector<SampleOutcome> takeOutcomes(const Turn& program);
  /// What the program's storage holds now; null when that cannot be told.
  [[nodiscard]] const RememberedInterfaces* held(const Turn& program) const;

 private:
  using Contents = std::shared_ptr<const RememberedInterfaces>;

  struct Version {
    std::uint64_t number = 0;
    std::string bytes;
    Contents contents;  // null when they are not in the storage's form
    Scheduler::TimePoint putAt;
  };

  /// What one sampling step saw.
  struct Step {
    std::uint64_t versionAtLock = 0;
    bool wasHampered = false;  // a look at the data file failed
    bool wasDisturbed = false;
    bool isReset = false;
    bool resetIsSaved = false;
    std::optional<WallTime> bootDate;
    std::optional<WallTime> fileDate;
    std::vector<Contents> bases;  // what the storage held, in order
    std::shared_ptr<const MachineReading> reading;
    WallTime readAt;
    bool isSaved = false;
    SampleOutcome outcome;
  };

  struct State {
    Contents held = std::make_shared<const RememberedInterfaces>();  // null when unknown
    std::uint64_t heldVersion = 0;  // of the file, which `held` was loaded from or goes back to
    bool heldIsUncertain = false;   // `held`, or what the last step made of something it has seen
    Contents saving;
    std::string savingBytes;
    std::optional<Step> step;
    std::vector<SampleOutcome> outcomes;
  };

  [[nodiscard]] const Version& current() const { return versions_.back(); }
  void push(std::string bytes, Contents contents);
  void resetIfDue(const Turn& program, State& state);
  void checkReset(const Turn& program, Step& step, const RememberedInterfaces& contents);
  void checkStrictly(const Turn& program, State& state, RememberedInterfaces& contents);
  void checkLoosely(const Turn& program, const Step& step, RememberedInterfaces& contents);
  void checkNothingWentBack(const Turn& program, const State& state);
  void noteWraps(const Turn& program, const RememberedInterfaces& before,
                 const MachineReading& reading);
  [[nodiscard]] std::optional<BandwidthClassValue> classOf(const Step& step,
                                                           const RememberedInterfaces& before,
                                                           const RememberedInterfaces& after) const;

  RunContext& run_;
  LockObserver& lock_;
  const Counting counting_;
  std::deque<Version> versions_{Version{}};  // the last few; the latest is what stands there now
  std::map<std::uint32_t, State> states_;
};

}  // namespace lanternfold::simulation
