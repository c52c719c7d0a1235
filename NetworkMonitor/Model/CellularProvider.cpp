#include "NetworkMonitor/Model/CellularProvider.h"

#include <cstddef>
#include <string_view>
#include <utility>

#include "Platform/ByteCounts.h"
#include "Support/Localizable.h"

namespace lanternfold {
namespace {

SourceListItem carrierRow(const CellularProvider& provider, std::size_t position,
                          const StringTable& strings) {
  const bool severalCarriers = provider.carriers.size() > 1;
  std::string label = strings.localized("Carrier");
  if (severalCarriers) label += " " + std::to_string(position + 1);
  if (provider.dataCarrierIndex && std::cmp_equal(*provider.dataCarrierIndex, position)) {
    label += ", " + strings.localized("data");
  }
  return {.label = std::move(label),
          .value = provider.carriers[position].name,
          .labelRequired = severalCarriers};
}

SourceListItem hotspotRow(const ConnectionMetrics& metrics, const StringTable& strings) {
  const ByteCountFormatter formatter = byteCountFormatter(ByteCountStyle::decimal, strings);
  return {.label = strings.localized("Hotspot"),
          .value = formatter.text(metrics.totalBytes()),
          .labelRequired = true};
}

}  // namespace

SourceList CellularProvider::listRepresentation(const StringTable&) const { return {}; }

SourceList CellularProvider::compressedListRepresentation(const StringTable& strings) const {
  SourceList rows;
  for (std::size_t position = 0; position < carriers.size(); ++position) {
    rows.push_back(carrierRow(*this, position, strings));
  }
  if (carriers.size() == 1) {
    rows.push_back(
        {.label = strings.localized("VoIP"),
         .value = strings.localized(carriers.front().allowsVOIP ? localizable("VoIP Enabled")
                                                                : localizable("VoIP Disabled"))});
  }
  if (hotspotMetrics) rows.push_back(hotspotRow(*hotspotMetrics, strings));
  return rows;
}

}  // namespace lanternfold
