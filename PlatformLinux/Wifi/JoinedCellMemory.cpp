#include "PlatformLinux/Wifi/JoinedCellMemory.h"

#include <utility>

namespace lanternfold {

namespace {

/// The interface as far as its cells depend on it: the power follows the signal.
WifiInterfaceMessage withoutPower(WifiInterfaceMessage interface) {
  interface.transmitPowerMillibels.reset();
  for (WifiInterfaceLink& link : interface.links) link.transmitPowerMillibels.reset();
  return interface;
}

}  // namespace

JoinedCellMemory::JoinedCellMemory(MayHaveChanged mayHaveChanged)
    : mayHaveChanged_(std::move(mayHaveChanged)) {}

JoinedCellMemory::Reading JoinedCellMemory::begin() {
  const std::lock_guard lock(mutex_);
  if (mayHaveChanged_ && mayHaveChanged_()) {
    latest_ = Reading(std::to_underlying(latest_) + 1);
    kept_.clear();
  }
  return latest_;
}

std::optional<JoinedCellMemory::Cells> JoinedCellMemory::cellsOf(
    const WifiInterfaceMessage& interface, Reading reading) const {
  const std::lock_guard lock(mutex_);
  const auto kept = kept_.find(interface.index);
  if (!isLatest(reading) || kept == kept_.end()) return std::nullopt;
  if (kept->second.interface != withoutPower(interface)) return std::nullopt;
  return kept->second.cells;
}

void JoinedCellMemory::keep(const WifiInterfaceMessage& interface, Cells cells, Reading reading) {
  const std::lock_guard lock(mutex_);
  if (!mayHaveChanged_ || !isLatest(reading)) return;
  kept_.insert_or_assign(interface.index, Kept{withoutPower(interface), std::move(cells)});
}

bool JoinedCellMemory::isLatest(Reading reading) const { return reading == latest_; }

}  // namespace lanternfold
