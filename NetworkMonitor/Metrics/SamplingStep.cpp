#include "NetworkMonitor/Metrics/SamplingStep.h"

#include <algorithm>
#include <chrono>
#include <optional>
#include <utility>
#include <vector>

#include "NetworkMonitor/Metrics/AdjustedMetrics.h"

namespace lanternfold {

SamplingStep::SamplingStep(const Parts& parts, Position position)
    : parts_(parts),
      position_(position),
      persistent_(dynamic_cast<ConnectionMetricsPersistentStorage*>(&parts.storage)),
      locking_(dynamic_cast<ConnectionMetricsLockingStorage*>(&parts.storage)) {}

std::expected<SamplingStep::Outcome, ConnectionMetricsError> SamplingStep::take() {
  if (locking_ != nullptr) {
    if (const auto locked = locking_->lock(); !locked) return std::unexpected(locked.error());
  }
  if (persistent_ != nullptr && predatesLastBoot()) {
    parts_.storage.reset();
    if (const auto saved = persistent_->save(); !saved) return std::unexpected(saved.error());
  }

  const auto reading = parts_.reader.read();
  if (!reading) return std::unexpected(reading.error());
  Outcome outcome = registerReading(*reading);

  if (persistent_ != nullptr) {
    if (const auto saved = persistent_->save(); !saved) return std::unexpected(saved.error());
  }
  if (locking_ != nullptr) {
    if (const auto unlocked = locking_->unlock(); !unlocked) {
      return std::unexpected(unlocked.error());
    }
  }
  return outcome;
}

bool SamplingStep::predatesLastBoot() const {
  const auto boot = parts_.dateUtils.lastBootDate();
  const auto registered = parts_.storage.lastRegisterDate();
  return boot && registered && *boot > *registered;
}

SamplingStep::Outcome SamplingStep::registerReading(const ConnectionMetricsMap& reading) {
  ConnectionMetricsStorage& storage = parts_.storage;
  std::vector<ConnectionMetrics> adjustedValues;
  adjustedValues.reserve(reading.size());
  auto bandwidthClass = ConnectionBandwidthClass::idle;
  for (std::size_t position = 0; position < reading.size(); ++position) {
    const std::string& name = reading.name(position);
    const ConnectionMetrics& current = reading.value(position);

    // Looked at for each interface: where registering moves the date, only the first one is judged
    // over the time since the last sample, every other one since the interface before it.
    const auto previous = storage.remembered(name);
    const ConnectionMetrics& value =
        adjustedValues.emplace_back(adjusted(current, previous.original, previous.adjusted));
    storage.registerMetrics(current, name, ConnectionMetricsType::original);
    storage.registerMetrics(value, name, ConnectionMetricsType::adjusted);

    if (previous.adjusted && previous.lastRegisterDate) {
      const std::chrono::duration<double> interval =
          parts_.dateUtils.currentDate() - *previous.lastRegisterDate;
      bandwidthClass =
          std::max(bandwidthClass, parts_.analyzer.evaluate(*previous.adjusted, value, interval));
    }
  }
  return {.adjusted = ConnectionMetricsMap(reading.names(), std::move(adjustedValues)),
          .bandwidthClass = bandwidthClass};
}

ConnectionMetrics SamplingStep::adjusted(
    const ConnectionMetrics& current, const std::optional<ConnectionMetrics>& previousOriginal,
    const std::optional<ConnectionMetrics>& previousAdjusted) const {
  if (position_ == Position::first && persistent_ == nullptr) {
    return ConnectionMetrics::initial(current.mtu);
  }
  if (!parts_.reader.is32bitCapped()) return current;
  return carriedForward(current, previousOriginal, previousAdjusted);
}

}  // namespace lanternfold
