// What a program's reader and clock services tell while it takes a sample, whatever the storage.
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <vector>

#include "Tests/Simulation/Disk.h"
#include "Tests/Simulation/SampleOutcome.h"

namespace lanternfold::simulation {

/// Of one program.
class SampleObserver {
 public:
  virtual ~SampleObserver() = default;

  virtual void bootDateRead(std::optional<std::chrono::system_clock::time_point> date) = 0;
  virtual void countersRead(std::shared_ptr<const MachineReading> reading) = 0;
  virtual void readingFailed() = 0;
  /// How the steps ended that were taken since this was asked last; asked whenever the program
  /// turns to another work.
  [[nodiscard]] virtual std::vector<SampleOutcome> takeOutcomes() = 0;
  /// What the program's storage has to hold now.
  [[nodiscard]] virtual const RememberedInterfaces* held() const = 0;
};

/// Over a file: everything goes to the disk's observers.
class FileSampleObserver final : public SampleObserver {
 public:
  /// Both outlive it.
  FileSampleObserver(Disk& disk, const Turn& program) : disk_(disk), program_(program) {}
  ~FileSampleObserver() override {
    disk_.lockObserver.restsOrEnded(program_);
    disk_.fileObserver.ended(program_);
  }

  void bootDateRead(std::optional<std::chrono::system_clock::time_point> date) override {
    disk_.fileObserver.bootDateRead(program_, date);
  }
  void countersRead(std::shared_ptr<const MachineReading> reading) override {
    disk_.fileObserver.countersRead(program_, std::move(reading));
  }
  void readingFailed() override {}
  [[nodiscard]] std::vector<SampleOutcome> takeOutcomes() override {
    auto outcomes = disk_.fileObserver.takeOutcomes(program_);
    disk_.lockObserver.restsOrEnded(program_);
    return outcomes;
  }
  [[nodiscard]] const RememberedInterfaces* held() const override {
    return disk_.fileObserver.held(program_);
  }

 private:
  Disk& disk_;
  const Turn& program_;
};

}  // namespace lanternfold::simulation
