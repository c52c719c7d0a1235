// A machine with one recorder, and a diary of when it sampled.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "Tests/NetworkMonitor/Metrics/RecorderMachine.h"
#include "Tests/NetworkMonitor/Metrics/ScriptedMetricsStorage.h"

namespace lanternfold {

class RecorderFixture : public testing::Test {
 protected:
  RecorderFixture() {
    machine.setCounters("en0", 10, 20);
    machine.reader->beforeReading([this] {
      diary += machine.seconds() + " ";
      if (duringReading) duringReading();
    });
  }

  /// Lets the next sample that is taken a second after the last one find this class.
  void makeBusy(ConnectionBandwidthClass bandwidthClass) {
    const std::map<ConnectionBandwidthClass, std::uint64_t> bytes{
        {ConnectionBandwidthClass::idle, 0},
        {ConnectionBandwidthClass::low, 500'000},
        {ConnectionBandwidthClass::high, 6'250'000},
        {ConnectionBandwidthClass::veryHigh, 31'250'000}};
    sent += bytes.at(bandwidthClass);
    machine.setCounters("en0", sent, 20);
  }
  [[nodiscard]] Subscription follow() {
    return recorder->eventsPublisher().subscribe([this](const Recorder::Event& event) {
      diary += event.rawValue + "=" + std::string(nameOf(recorder->currentBandwidthClass())) + " ";
    });
  }

  RecorderMachine machine;
  std::string diary;  ///< the second of each sample, and whatever else a test notes
  std::function<void()> duringReading;
  std::uint64_t sent = 10;
  std::shared_ptr<ScriptedMetricsStorage> storage =
      std::make_shared<ScriptedMetricsStorage>(machine.clock);
  std::shared_ptr<Recorder> recorder = machine.recorderOver(storage);
};

}  // namespace lanternfold
