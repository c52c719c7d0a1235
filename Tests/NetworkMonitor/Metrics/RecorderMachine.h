// A machine on a virtual clock whose counters a test sets, for recorders over any storage.
#pragma once

#include <chrono>
#include <expected>
#include <memory>
#include <string>

#include "NetworkMonitor/Metrics/ConnectionMetricsRecorder.h"
#include "NetworkMonitor/Metrics/StandardConnectionBandwidthAnalyzer.h"
#include "Tests/Support/FakeConnectionMetricsReader.h"
#include "Tests/Support/FakeNetworkKernel.h"
#include "Tests/Support/RecordingDiagnosticLog.h"
#include "Tests/Support/SimulatedClock.h"
#include "Tests/Support/SimulatedDispatch.h"

namespace lanternfold {

using Recorder = ConnectionMetricsRecorder;

/// Of each interface its name and the bytes sent and received: "en0 10/20, en1 0/0".
inline std::string textOf(const ConnectionMetricsMap& metrics) {
  std::string text;
  for (std::size_t position = 0; position < metrics.size(); ++position) {
    const ConnectionMetrics& value = metrics.value(position);
    if (position > 0) text += ", ";
    text += metrics.name(position) + " " + std::to_string(value.sentBytes) + "/" +
            std::to_string(value.recvBytes);
  }
  return text;
}

/// The same, or what failed.
inline std::string textOf(const Recorder::Metrics& outcome) {
  return outcome ? textOf(*outcome) : "failed: " + describe(outcome.error());
}

class RecorderMachine {
 public:
  explicit RecorderMachine(std::uint64_t seed = 1) : dispatch(clock, seed) {
    reader->set32bitCapped(true);
  }

  [[nodiscard]] std::shared_ptr<Recorder> recorderOver(
      std::shared_ptr<ConnectionMetricsStorage> storage,
      std::shared_ptr<const ConnectionBandwidthAnalyzer> analyzer =
          std::make_shared<StandardConnectionBandwidthAnalyzer>()) {
    return Recorder::make(std::move(storage), reader, DateUtils(clock, kernel), std::move(analyzer),
                          {.dispatch = dispatch, .clock = clock, .diagnostics = log});
  }

  [[nodiscard]] DispatchQueue& recorderQueue() {
    return dispatch.serialQueue(Recorder::queueLabel, QualityOfService::background);
  }

  /// Lets the counters of an interface stand at these.
  void setCounters(const std::string& name, std::uint64_t sentBytes, std::uint64_t recvBytes) {
    reader->set(name, {.sentBytes = sentBytes, .recvBytes = recvBytes, .mtu = 1500});
  }

  /// Whole seconds of virtual time since the machine was made.
  [[nodiscard]] std::string seconds() const {
    return std::to_string((clock.steadyNow() - start_) / std::chrono::seconds(1));
  }

  SimulatedClock clock;
  SimulatedDispatch dispatch;
  RecordingDiagnosticLog log;
  FakeNetworkKernel kernel;
  const std::shared_ptr<FakeConnectionMetricsReader> reader =
      std::make_shared<FakeConnectionMetricsReader>();

 private:
  const std::chrono::steady_clock::time_point start_ = clock.steadyNow();
};

}  // namespace lanternfold
