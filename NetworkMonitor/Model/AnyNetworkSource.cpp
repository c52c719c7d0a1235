#include "NetworkMonitor/Model/AnyNetworkSource.h"

namespace lanternfold {

bool activeOf(const AnyNetworkSource& source) {
  return std::visit([](const auto& record) { return record.active; }, source);
}

const std::string& displayNameOf(const AnyNetworkSource& source) {
  return std::visit([](const auto& record) -> const std::string& { return record.displayName; },
                    source);
}

const ConnectionMetrics& metricsOf(const AnyNetworkSource& source) {
  return std::visit(
      [](const auto& record) -> const ConnectionMetrics& { return metricsOf(record); }, source);
}

NetworkSourceCategory categoryOf(const AnyNetworkSource& source) {
  return std::visit([](const auto& record) { return record.category(); }, source);
}

SourceList listRepresentationOf(const AnyNetworkSource& source, const StringTable& strings) {
  return std::visit([&strings](const auto& record) { return record.listRepresentation(strings); },
                    source);
}

SourceList compressedListRepresentationOf(const AnyNetworkSource& source,
                                          const StringTable& strings) {
  return std::visit(
      [&strings](const auto& record) { return record.compressedListRepresentation(strings); },
      source);
}

}  // namespace lanternfold
