#include "NetworkMonitor/Interfaces/WalkingInterfaceResolver.h"

#include <utility>

namespace lanternfold {

WalkingInterfaceResolver::WalkingInterfaceResolver(std::shared_ptr<InterfaceResolver> walker,
                                                   std::shared_ptr<RememberingMetricsReader> reader)
    : walker_(std::move(walker)), reader_(std::move(reader)) {}

std::vector<BasicInterface> WalkingInterfaceResolver::interfaces() {
  return beginWalk().interfaces();
}

std::vector<BasicInterface> WalkingInterfaceResolver::interfacesExcluding(
    const std::vector<std::string>& names) {
  return beginWalk().interfacesExcluding(names);
}

std::vector<BasicInterface> WalkingInterfaceResolver::interfacesPrefixed(std::string_view prefix) {
  return beginWalk().interfacesPrefixed(prefix);
}

std::optional<BasicInterface> WalkingInterfaceResolver::interfaceNamed(std::string_view name) {
  return beginWalk().interfaceNamed(name);
}

InterfaceResolver& WalkingInterfaceResolver::beginWalk() const {
  reader_->beginWalk();
  return *walker_;
}

}  // namespace lanternfold
