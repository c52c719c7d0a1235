// A machine with interfaces whose true counters are 64 bits wide and grow with the traffic.
//
// Made by: the world, which changes its traffic, its interfaces and reboots it. Read by: the
// programs' readers, and by the observers, who know the truth behind what a reader said.
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "NetworkMonitor/Metrics/ConnectionMetricsMap.h"
#include "Tests/Support/SimulatedClock.h"

namespace lanternfold::simulation {

/// What an interface has really counted since it came. One that leaves and comes back, also over a
/// reboot, is another one.
struct TrueCounters {
  std::uint64_t incarnation = 0;
  ConnectionMetrics counters;
};

/// One look at the machine: what the reader was given, and the truth behind it.
struct MachineReading {
  ConnectionMetricsMap given;
  std::map<std::string, TrueCounters, std::less<>> truth;
};

/// Bytes per second in each direction.
struct TrafficRate {
  std::uint64_t sent = 0;
  std::uint64_t received = 0;
};

class SimulatedMachine {
 public:
  /// Where the time of the last boot comes from: some systems remember it, others subtract the time
  /// they run from the wall clock, so that it moves with every step of that clock.
  enum class BootDate { remembered, followsWallClock };

  /// `clock` outlives the machine.
  SimulatedMachine(const SimulatedClock& clock, BootDate bootDate);

  /// Makes the time of the last boot now; interfaces that are there start anew from zero.
  void boot();
  [[nodiscard]] std::optional<std::chrono::system_clock::time_point> lastBootDate() const;

  /// An interface comes that has counted `counters` already.
  void add(const std::string& name, const ConnectionMetrics& counters);
  void remove(const std::string& name);
  [[nodiscard]] bool has(const std::string& name) const { return links_.contains(name); }
  void setRate(const std::string& name, TrafficRate rate);
  void setMtu(const std::string& name, std::uint64_t mtu);
  /// One counter grows at once, as after a storm of damaged packets.
  void jump(const std::string& name, std::uint64_t ConnectionMetrics::* counter,
            std::uint64_t amount);

  /// The counters as they are now, cut to 32 bits for a capped reader.
  [[nodiscard]] std::shared_ptr<const MachineReading> read(bool is32bitCapped);

 private:
  struct Link {
    TrueCounters truth;
    TrafficRate rate;
    std::uint64_t sentRest = 0;      // in bytes times nanoseconds per second
    std::uint64_t receivedRest = 0;  // the same
    std::chrono::steady_clock::time_point countedUntil;
  };

  [[nodiscard]] Link& countedLink(const std::string& name);
  void count(Link& link) const;

  const SimulatedClock& clock_;
  const BootDate bootDate_;
  std::chrono::steady_clock::time_point bootedAt_;
  std::chrono::system_clock::time_point bootedAtWall_;
  std::uint64_t lastIncarnation_ = 0;
  std::map<std::string, Link, std::less<>> links_;
};

}  // namespace lanternfold::simulation
