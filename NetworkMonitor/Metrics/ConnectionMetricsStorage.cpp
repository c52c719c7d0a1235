#include "NetworkMonitor/Metrics/ConnectionMetricsStorage.h"

namespace lanternfold {

ConnectionMetricsStorage::Remembered ConnectionMetricsStorage::remembered(
    std::string_view interfaceName) {
  return {.lastRegisterDate = lastRegisterDate(),
          .original = metrics(interfaceName, ConnectionMetricsType::original),
          .adjusted = metrics(interfaceName, ConnectionMetricsType::adjusted)};
}

bool ConnectionMetricsStorage::isChanged(Date date) const {
  const auto registered = lastRegisterDate();
  return !registered || date < *registered;
}

bool ConnectionMetricsStorage::isPersistent() const {
  return dynamic_cast<const ConnectionMetricsPersistentStorage*>(this) != nullptr;
}

}  // namespace lanternfold
