// A simulated program that keeps sampling, as the service does: started by a first read, read by
// its user now and then, stopped, started and given another interval by hand.
#pragma once

#include <chrono>
#include <memory>

#include "NetworkMonitor/Metrics/RecordedConnectionMetricsReader.h"
#include "Tests/Simulation/ProgramParts.h"
#include "Tests/Simulation/ScheduleObserver.h"

namespace lanternfold::simulation {

/// How one recorder program is used.
struct RecorderHabits {
  bool isAdaptive = true;  ///< through the reader that follows the class; else a bare recorder
  std::chrono::nanoseconds meanTimeBetweenUses = std::chrono::hours(8);
  bool isSetByHand = false;  ///< its user also stops it, starts it and sets its interval
};

class RecorderProgram {
 public:
  /// `installation` outlives it.
  RecorderProgram(Installation& installation, RecorderHabits habits);

  void begin();
  /// Has it leave when it wakes next.
  void askToEnd() { isAskedToEnd_ = true; }
  [[nodiscard]] Turn& turn() { return turn_; }

 private:
  struct Objects;
  using TimePoint = Scheduler::TimePoint;

  void live();
  void start(Objects& objects);
  void settle(Objects& objects);
  void use(Objects& objects);
  void useByHand(Objects& objects);
  void readSynchronously(Objects& objects);
  void readInBackground(Objects& objects);
  void lookUp(Objects& objects);
  void compareWithHeld(Objects& objects, const ConnectionMetricsMap& found);

  Installation& installation_;
  RunContext& run_;
  const RecorderHabits habits_;
  Turn turn_;
  bool isAskedToEnd_ = false;
  std::uint64_t failedRestores_ = 0;
};

}  // namespace lanternfold::simulation
