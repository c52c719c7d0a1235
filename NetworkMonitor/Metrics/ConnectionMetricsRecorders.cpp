#include "NetworkMonitor/Metrics/ConnectionMetricsRecorders.h"

#include <utility>

#include "NetworkMonitor/Metrics/BsdConnectionMetricsReader.h"
#include "NetworkMonitor/Metrics/FileConnectionMetricsStorage.h"
#include "NetworkMonitor/Metrics/InMemoryConnectionMetricsStorage.h"
#include "NetworkMonitor/Metrics/StandardConnectionBandwidthAnalyzer.h"
#include "NetworkMonitor/Metrics/UserDefaultsConnectionMetricsStorage.h"

namespace lanternfold {

std::shared_ptr<ConnectionMetricsRecorder> ConnectionMetricsRecorders::inMemory() {
  const std::lock_guard lock(mutex_);
  if (inMemory_ == nullptr) {
    inMemory_ = over(std::make_shared<InMemoryConnectionMetricsStorage>(environment_.clock));
  }
  return inMemory_;
}

std::shared_ptr<ConnectionMetricsRecorder> ConnectionMetricsRecorders::persistent() {
  const std::lock_guard lock(mutex_);
  if (persistent_ == nullptr) persistent_ = persistent(environment_.userDefaults.standard());
  return persistent_;
}

std::shared_ptr<ConnectionMetricsRecorder> ConnectionMetricsRecorders::persistent(
    std::shared_ptr<UserDefaults> userDefaults) const {
  const UserDefaultsConnectionMetricsStorage::Environment environment{
      .clock = environment_.clock, .log = environment_.diagnostics};
  return over(
      std::make_shared<UserDefaultsConnectionMetricsStorage>(environment, std::move(userDefaults)));
}

std::shared_ptr<ConnectionMetricsRecorder> ConnectionMetricsRecorders::persistent(
    const std::filesystem::path& baseUrl, std::string_view name) const {
  const FileConnectionMetricsStorage::Environment environment{.files = environment_.files,
                                                              .clock = environment_.clock,
                                                              .dispatch = environment_.dispatch,
                                                              .log = environment_.diagnostics};
  return over(std::make_shared<FileConnectionMetricsStorage>(environment, baseUrl, name));
}

std::shared_ptr<ConnectionMetricsRecorder> ConnectionMetricsRecorders::over(
    std::shared_ptr<ConnectionMetricsStorage> storage) const {
  return ConnectionMetricsRecorder::make(
      std::move(storage), std::make_shared<BsdConnectionMetricsReader>(environment_.kernel),
      DateUtils(environment_.clock, environment_.kernel),
      std::make_shared<StandardConnectionBandwidthAnalyzer>(),
      {.dispatch = environment_.dispatch,
       .clock = environment_.clock,
       .diagnostics = environment_.diagnostics});
}

}  // namespace lanternfold
