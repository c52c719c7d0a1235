#include "NetworkMonitor/Model/WlanMetrics.h"

#include "Support/DoubleText.h"

namespace lanternfold {

std::string WlanMetrics::transmitPowerLabel() const {
  return std::to_string(transmitPower) + " mW";
}

std::string WlanMetrics::transmitRateLabel(const StringTable& strings) const {
  return doubleText(transmitRate) + " " + strings.localized("Mbps");
}

std::string WlanMetrics::noiseLabel() const { return doubleText(transmitRate) + " dBm"; }

std::string WlanMetrics::rssiLabel() const { return noiseLabel(); }

SourceList WlanMetrics::listRepresentation(const StringTable&) const { return {}; }

SourceList WlanMetrics::compressedListRepresentation(const StringTable& strings) const {
  return {{.label = strings.localized("PHY mode"), .value = PHYMode},
          {.label = strings.localized("Security"), .value = security},
          {.label = strings.localized("Channel"), .value = channel, .labelRequired = true}};
}

}  // namespace lanternfold
