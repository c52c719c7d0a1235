// Watches one recorder over time: when it samples, which class it reports, and how often.
//
// The rules: a started recorder samples at its start and then whenever its interval has passed,
// neither early nor late but for what held the program up; a class change is exactly one event, and
// sets the interval that belongs to the class, from then on; a failed sample of the schedule prints
// exactly one line.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <vector>

#include "NetworkMonitor/Metrics/ConnectionMetricsRecorder.h"
#include "Tests/Simulation/ProgramSeams.h"
#include "Tests/Simulation/SampleOutcome.h"

namespace lanternfold::simulation {

class ScheduleObserver {
 public:
  using TimePoint = std::chrono::steady_clock::time_point;

  /// All outlive it.
  ScheduleObserver(RunContext& run, const Turn& program, ConnectionMetricsRecorder& recorder,
                   ProgramLog& log)
      : run_(run), program_(program), recorder_(recorder), log_(log) {}

  // Told by the program.

  /// The recorder begins its schedule; `samplesAtOnce` but after a change of the interval.
  void began(bool samplesAtOnce);
  void stopped() { nextDue_.reset(); }
  /// The program has waited, undisturbed, for the next thing that it has to do.
  void woke();
  void intervalSet(std::chrono::seconds interval);
  /// The recorder has sent an event.
  void received(const ConnectionMetricsRecorder::Event& event, bool setsInterval);
  /// The program asked for a sample of its own; whether it failed.
  void sampledByHand(bool failed);
  /// Steps have ended.
  void ended(const std::vector<SampleOutcome>& outcomes);
  /// Nothing is due any more.
  void rests();

 private:
  void checkTicks();
  void checkClass();

  RunContext& run_;
  const Turn& program_;
  ConnectionMetricsRecorder& recorder_;
  ProgramLog& log_;

  std::optional<TimePoint> base_;     // of the schedule
  std::optional<TimePoint> nextDue_;  // the next sample of the schedule
  std::chrono::seconds interval_{120};
  BandwidthClassValue class_ = 0;                    // of the last event
  std::optional<BandwidthClassValue> expected_ = 0;  // of the last complete step, when known

  // Since the last rest.
  std::uint64_t steps_ = 0;
  std::uint64_t failures_ = 0;
  std::uint64_t stepsByHand_ = 0;
  std::uint64_t failuresByHand_ = 0;
  bool mayHaveBeenCancelled_ = false;
};

}  // namespace lanternfold::simulation
