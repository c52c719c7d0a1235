#include "Tests/NetworkMonitor/Monitor/MonitorScene.h"

#include <utility>

namespace lanternfold {
namespace {

std::string namesOf(const std::vector<BasicInterface>& interfaces) {
  std::string names;
  for (const BasicInterface& interface : interfaces) {
    if (!names.empty()) names += ",";
    names += interface.name;
  }
  return names.empty() ? "none" : names;
}

std::string textOf(const std::optional<CellularProvider>& provider) {
  if (!provider) return "none";
  std::string names;
  for (const CarrierInfo& carrier : provider->carriers) {
    if (!names.empty()) names += ",";
    names += carrier.name;
  }
  return names.empty() ? "no carrier" : names;
}

/// The fields of `after` that differ from `before`, each with what it holds now.
std::string difference(const NetworkState& before, const NetworkState& after) {
  const auto truth = [](bool value) { return value ? "true" : "false"; };
  std::string text;
  if (after.internet != before.internet) text += " internet=" + after.internet.ip.value_or("none");
  if (after.wlan != before.wlan) {
    text += " wlan=" + (after.wlan ? after.wlan->interface.name : "none");
  }
  if (after.cellular != before.cellular) text += " cellular=" + textOf(after.cellular);
  if (after.others != before.others) text += " others=" + namesOf(after.others);
  if (after.cellularEnabled != before.cellularEnabled) {
    text += std::string(" cellularEnabled=") + truth(after.cellularEnabled);
  }
  if (after.multipleSim != before.multipleSim) {
    text += std::string(" multipleSim=") + truth(after.multipleSim);
  }
  return text.empty() ? " same" : text;
}

}  // namespace

BasicInterface adapter(const std::string& name) {
  BasicInterface interface;
  interface.active = true;
  interface.name = name;
  interface.displayName = "Adapter " + name;
  return interface;
}

WlanInterface wlanOver(const std::string& name) {
  WlanInterface wlan;
  wlan.active = true;
  wlan.displayName = "Wi-Fi";
  wlan.interface = adapter(name);
  wlan.interface.type = InterfaceType::wlan;
  return wlan;
}

CellularProvider providerWith(const std::vector<std::string>& carrierNames) {
  CellularProvider provider;
  provider.active = true;
  for (const std::string& name : carrierNames) provider.carriers.push_back({.name = name});
  return provider;
}

InternetInfo internetAt(const std::string& ip) {
  InternetInfo info;
  info.active = true;
  info.displayName = "Internet";
  info.ip = ip;
  return info;
}

void ReportText::add(NetworkSourceCategory upToDate, const NetworkState& state, bool complete,
                     std::error_code error) {
  text_ += "[" + std::to_string(upToDate.rawValue()) + "]" + difference(before_, state);
  if (complete) text_ += ", complete";
  if (error) text_ += ", error: " + error.message();
  text_ += "\n";
  before_ = state;
}

MonitorScene::MonitorScene() {
  interfaces->machine = {adapter("lo"), adapter("en0"), adapter("en1"), adapter("en5")};
  wlan->answer = wlanOver("en0");
  cellular->provider = providerWith({"Carrier A"});
}

std::shared_ptr<NetworkStateMonitor> MonitorScene::makeMonitor(NetworkSourceCategory active) {
  auto monitor = std::make_shared<NetworkStateMonitor>(
      internet, interfaces, wlan, cellular,
      NetworkStateMonitor::Environment{paths, dispatch.mainQueue(), strings});
  monitor->setActiveCategories(active);
  monitor->setStateUpdateHandler(reporter(monitor));
  return monitor;
}

std::shared_ptr<NetworkStateMonitor> MonitorScene::makeMonitorWithoutCellularResolver() {
  auto monitor = std::make_shared<NetworkStateMonitor>(
      internet, interfaces, wlan, nullptr,
      NetworkStateMonitor::Environment{paths, dispatch.mainQueue(), strings});
  monitor->setStateUpdateHandler(reporter(monitor));
  return monitor;
}

NetworkStateMonitor::StateUpdateHandler MonitorScene::reporter(
    const std::shared_ptr<NetworkStateMonitor>& monitor) {
  // Weak, so that the monitor does not hold itself.
  return [this, weak = std::weak_ptr(monitor)](const NetworkState& state, bool complete,
                                               std::error_code error) {
    reports.add(weak.lock()->upToDateCategories(), state, complete, error);
  };
}

}  // namespace lanternfold
