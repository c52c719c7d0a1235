#include "NetworkMonitor/Metrics/ConnectionMetricsStorage.h"

namespace lanternfold {

bool ConnectionMetricsStorage::isChanged(Date date) const {
  const auto registered = lastRegisterDate();
  return !registered || date < *registered;
}

bool ConnectionMetricsStorage::isPersistent() const {
  return dynamic_cast<const ConnectionMetricsPersistentStorage*>(this) != nullptr;
}

}  // namespace lanternfold
