// What happened in one run: the last events as text for who looks for a fault, a number that is
// the same for the same run, and counts.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "Tests/Simulation/Happenings.h"
#include "Tests/Support/SimulatedClock.h"

namespace lanternfold::simulation {

class EventLog {
 public:
  /// `clock` outlives the log.
  explicit EventLog(const SimulatedClock& clock);

  /// `actor` is 0 for the world itself, otherwise a program's number.
  void add(Happening happening, std::uint32_t actor = 0, std::int64_t amount = 0,
           std::string_view detail = {});

  /// Of every event so far; equal for equal runs.
  [[nodiscard]] std::uint64_t fingerprint() const { return fingerprint_; }
  [[nodiscard]] const HappeningCounts& counts() const { return counts_; }
  /// A line an event, the latest last.
  [[nodiscard]] std::string lastEvents() const;

 private:
  struct Event {
    std::chrono::steady_clock::time_point steady;
    std::chrono::system_clock::time_point wall;
    Happening happening = Happening::machineBooted;
    std::uint32_t actor = 0;
    std::int64_t amount = 0;
    std::string detail;
    std::uint64_t number = 0;
  };

  /// The last so many events.
  struct Ring {
    std::vector<Event> events;
    std::uint64_t count = 0;
  };

  void keep(Ring& ring, const Event& event);
  void mix(std::uint64_t value);
  [[nodiscard]] std::string line(const Event& event) const;

  const SimulatedClock& clock_;
  const std::chrono::steady_clock::time_point begin_;
  std::uint64_t eventCount_ = 0;
  Happening last_ = Happening::machineBooted;  // which is not told twice in a row
  std::uint32_t lastActor_ = 0;
  Ring all_;
  Ring notable_;  // without what happens at every sample, so that it reaches further back
  std::uint64_t fingerprint_ = 14695981039346656037ULL;
  HappeningCounts counts_;
};

/// "12d 03:04:05.000678": days, hours, minutes, seconds with microseconds.
[[nodiscard]] std::string spanText(std::chrono::nanoseconds span);

}  // namespace lanternfold::simulation
