// The class of an interface by the faster of its two directions.
//
// Made by: the composition, for a recorder. Packets, errors and collisions play no part.
#pragma once

#include <cstdint>

#include "NetworkMonitor/Metrics/ConnectionBandwidthAnalyzer.h"

namespace lanternfold {

/// A rate below a threshold belongs to the class below it. The fields may be set until a recorder
/// has the analyzer, and not while it samples.
class StandardConnectionBandwidthAnalyzer final : public ConnectionBandwidthAnalyzer {
 public:
  StandardConnectionBandwidthAnalyzer() = default;
  StandardConnectionBandwidthAnalyzer(std::uint64_t idle, std::uint64_t highSpeed,
                                      std::uint64_t veryHighSpeed)
      : idleTheshold(idle), highSpeedTheshold(highSpeed), veryHighSpeedTheshold(veryHighSpeed) {}

  [[nodiscard]] ConnectionBandwidthClass evaluate(
      const ConnectionMetrics& oldMetrics, const ConnectionMetrics& newMetrics,
      std::chrono::duration<double> interval) const override;

  // Bytes per second. The spelling is part of the interface, and stays.
  std::uint64_t idleTheshold = 500'000;              // 4 Mbit/s
  std::uint64_t highSpeedTheshold = 6'250'000;       // 50 Mbit/s
  std::uint64_t veryHighSpeedTheshold = 31'250'000;  // 250 Mbit/s

 private:
  [[nodiscard]] ConnectionBandwidthClass classOfDirection(
      std::uint64_t oldBytes, std::uint64_t newBytes, std::chrono::duration<double> interval) const;
};

}  // namespace lanternfold
