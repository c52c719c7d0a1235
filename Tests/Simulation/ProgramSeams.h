// The seams of one simulated program to its machine: counters, boot time, diagnostics.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "NetworkMonitor/Metrics/ConnectionMetricsReader.h"
#include "Platform/DiagnosticLog.h"
#include "Platform/NetworkKernel.h"
#include "Support/FatalError.h"
#include "Tests/Simulation/Installation.h"
#include "Tests/Simulation/SampleObserver.h"

namespace lanternfold::simulation {

/// The machine's counters, unless they cannot be read just now.
class ProgramReader final : public ConnectionMetricsReader {
 public:
  /// All outlive it.
  ProgramReader(Installation& installation, const Turn& program,
                std::unique_ptr<SampleObserver>& observer)
      : installation_(installation), program_(program), observer_(observer) {}

  [[nodiscard]] bool is32bitCapped() const override { return installation_.is32bitCapped; }
  [[nodiscard]] std::expected<ConnectionMetricsMap, ConnectionMetricsError> read() override {
    if (installation_.readerFails) {
      installation_.run.log.add(Happening::readerFailed, program_.number());
      observer_->readingFailed();
      return std::unexpected(ConnectionMetricsReaderError::failedGetIf);
    }
    auto reading = installation_.machine.read(installation_.is32bitCapped);
    observer_->countersRead(reading);
    return reading->given;
  }

 private:
  Installation& installation_;
  const Turn& program_;
  std::unique_ptr<SampleObserver>& observer_;  // made after the reader
};

/// A kernel that is asked for its boot time only.
class ProgramKernel final : public NetworkKernel {
 public:
  /// Both outlive it.
  ProgramKernel(const SimulatedMachine& machine, std::unique_ptr<SampleObserver>& observer)
      : machine_(machine), observer_(observer) {}

  [[nodiscard]] std::unique_ptr<NetworkKernelReading> beginReading() const override {
    fatalError("a recorder asked the kernel for more than its boot time");
  }
  [[nodiscard]] std::optional<std::chrono::system_clock::time_point> bootTime() const override {
    const auto date = machine_.lastBootDate();
    observer_->bootDateRead(date);
    return date;
  }

 private:
  const SimulatedMachine& machine_;
  std::unique_ptr<SampleObserver>& observer_;
};

/// Counts the lines by their beginning.
class ProgramLog final : public DiagnosticLog {
 public:
  void line(std::string_view text) override {
    if (text.starts_with("Failed to save storage: ")) {
      ++failedSamples_;
    } else if (text.starts_with("Failed to restore from file: ")) {
      ++failedRestores_;
    } else if (!text.starts_with("The file that could not be restored was kept as: ")) {
      unexpected_ = text;
    }
  }
  [[nodiscard]] std::uint64_t takeFailedSamples() { return std::exchange(failedSamples_, 0); }
  [[nodiscard]] std::uint64_t takeFailedRestores() { return std::exchange(failedRestores_, 0); }
  [[nodiscard]] const std::optional<std::string>& unexpected() const { return unexpected_; }

 private:
  std::uint64_t failedSamples_ = 0;
  std::uint64_t failedRestores_ = 0;
  std::optional<std::string> unexpected_;
};

}  // namespace lanternfold::simulation
