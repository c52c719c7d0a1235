// Watches a storage that keeps no copy of its own, in memory or in user defaults, by looking into
// it before and after each sample.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "NetworkMonitor/Metrics/ConnectionMetricsStorage.h"
#include "Tests/Simulation/SampleObserver.h"

namespace lanternfold::simulation {

/// Of one program, whose storage nobody else writes.
class DirectSampleObserver final : public SampleObserver {
 public:
  using WallTime = std::chrono::system_clock::time_point;

  /// All outlive it. `canSave` tells whether the storage would reach the disk just now.
  DirectSampleObserver(RunContext& run, const Turn& program, ConnectionMetricsStorage& storage,
                       Counting counting, std::function<bool()> canSave)
      : run_(run),
        program_(program),
        storage_(storage),
        counting_(counting),
        canSave_(std::move(canSave)),
        held_(contents()) {}

  void bootDateRead(std::optional<WallTime> date) override;
  void countersRead(std::shared_ptr<const MachineReading> reading) override;
  void readingFailed() override;
  [[nodiscard]] std::vector<SampleOutcome> takeOutcomes() override;
  [[nodiscard]] const RememberedInterfaces* held() const override { return &held_; }

 private:
  struct Sample {
    RememberedInterfaces before;
    RememberedInterfaces expected;
    std::optional<BandwidthClassValue> bandwidthClass;
  };

  [[nodiscard]] RememberedInterfaces contents();
  [[nodiscard]] BandwidthClassValue classOf(const Sample& sample, const MachineReading& reading,
                                            std::optional<WallTime> previousDate) const;
  /// The sample that began last is over.
  void endSample();
  void check(const Sample& sample);

  RunContext& run_;
  const Turn& program_;
  ConnectionMetricsStorage& storage_;
  const Counting counting_;
  const std::function<bool()> canSave_;
  bool hasSampled_ = false;
  bool isResetDue_ = false;
  std::optional<Sample> sample_;
  std::vector<SampleOutcome> outcomes_;
  RememberedInterfaces held_;
};

}  // namespace lanternfold::simulation
