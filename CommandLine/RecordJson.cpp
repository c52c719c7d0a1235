#include "CommandLine/RecordJson.h"

#include <optional>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

#include "NetworkMonitor/Metrics/ConnectionMetricsJsonValue.h"

namespace lanternfold {
namespace {

using Json = nlohmann::ordered_json;

// One overload a record. They are found by argument-dependent look-up from the templates below, so
// all are declared first.
Json toJson(const IPv4ConnectionDetails& details);
Json toJson(const IPv6ConnectionDetails& details);
Json toJson(const BasicInterface& interface);
Json toJson(const CarrierInfo& carrier);
Json toJson(const CellularProvider& provider);
Json toJson(const WlanMetrics& metrics);
Json toJson(const WlanNetwork& network);
Json toJson(const WlanInterface& wlan);
Json toJson(const InternetInfo& info);

Json toJson(const ConnectionMetrics& metrics) { return connectionMetricsToJson(metrics); }
Json toJson(const std::string& text) { return text; }
Json toJson(bool flag) { return flag; }
Json toJson(std::int64_t number) { return number; }

template <typename Value>
Json optionalToJson(const std::optional<Value>& value) {
  return value ? toJson(*value) : Json(nullptr);
}

template <typename List>
Json listToJson(const List& list) {
  Json array = Json::array();
  for (const auto& element : list) array.push_back(toJson(element));
  return array;
}

std::string_view caseName(InterfaceType type) {
  switch (type) {
    case InterfaceType::wlan:
      return "wlan";
    case InterfaceType::ethernet:
      return "ethernet";
    case InterfaceType::bluetooth:
      return "bluetooth";
    case InterfaceType::cellular:
      return "cellular";
    case InterfaceType::unknown:
      break;
  }
  return "unknown";
}

Json toJson(const IPv4ConnectionDetails& details) {
  return {{"address", details.address},
          {"netmask", details.netmask},
          {"gateway", details.gateway},
          {"cidr", details.cidr}};
}

Json toJson(const IPv6ConnectionDetails& details) {
  return {{"address", details.address},
          {"prefix", details.prefix},
          {"gateway", details.gateway},
          {"cidr", details.cidr}};
}

Json toJson(const BasicInterface& interface) {
  return {
      {"active", interface.active},           {"displayName", interface.displayName},
      {"metrics", toJson(interface.metrics)}, {"name", interface.name},
      {"type", caseName(interface.type)},     {"supportsIPv4", interface.supportsIPv4},
      {"IPv4", listToJson(interface.IPv4)},   {"supportsIPv6", interface.supportsIPv6},
      {"IPv6", listToJson(interface.IPv6)},   {"hwAddress", optionalToJson(interface.hwAddress)}};
}

Json toJson(const CarrierInfo& carrier) {
  return {{"name", carrier.name},
          {"radioAccessTechnology", carrier.radioAccessTechnology},
          {"allowsVOIP", carrier.allowsVOIP},
          {"countryCode", optionalToJson(carrier.countryCode)},
          {"mcc", optionalToJson(carrier.mcc)},
          {"mnc", optionalToJson(carrier.mnc)}};
}

Json toJson(const CellularProvider& provider) {
  return {{"active", provider.active},
          {"displayName", provider.displayName},
          {"carriers", listToJson(provider.carriers)},
          {"dataCarrierIndex", optionalToJson(provider.dataCarrierIndex)},
          {"interfaces", listToJson(provider.interfaces)},
          {"metrics", toJson(provider.metrics)},
          {"hotspotInterface", optionalToJson(provider.hotspotInterface)},
          {"hotspotMetrics", optionalToJson(provider.hotspotMetrics)}};
}

Json toJson(const WlanMetrics& metrics) {
  return {{"PHYMode", metrics.PHYMode},
          {"countryCode", metrics.countryCode},
          {"security", metrics.security},
          {"channel", metrics.channel},
          {"rssi", metrics.rssi},
          {"noise", metrics.noise},
          {"transmitPower", metrics.transmitPower},
          {"transmitRate", metrics.transmitRate}};
}

Json toJson(const WlanNetwork& network) {
  return {{"ssid", network.ssid},
          {"bssid", network.bssid},
          {"metrics", optionalToJson(network.metrics)}};
}

Json toJson(const WlanInterface& wlan) {
  return {{"active", wlan.active},
          {"displayName", wlan.displayName},
          {"mode", optionalToJson(wlan.mode)},
          {"interface", toJson(wlan.interface)},
          {"currentNetwork", optionalToJson(wlan.currentNetwork)}};
}

Json toJson(const InternetInfo& info) {
  return {{"active", info.active},
          {"displayName", info.displayName},
          {"ip", optionalToJson(info.ip)},
          {"supportsIPv6", optionalToJson(info.supportsIPv6)},
          {"ipv6", optionalToJson(info.ipv6)},
          {"isp", optionalToJson(info.isp)},
          {"country", optionalToJson(info.country)},
          {"interface", optionalToJson(info.interface)},
          {"dns", listToJson(info.dns)},
          {"metrics", toJson(info.metrics)}};
}

Json askedPartOf(const NetworkState& state, NetworkSourceCategory asked) {
  using Category = NetworkSourceCategory;
  const Json none = nullptr;
  return {
      {"internet", asked.contains(Category::internet()) ? toJson(state.internet) : none},
      {"wlan", asked.contains(Category::wlan()) ? optionalToJson(state.wlan) : none},
      {"cellular", asked.contains(Category::cellular()) ? optionalToJson(state.cellular) : none},
      {"others", asked.contains(Category::other()) ? listToJson(state.others) : Json::array()},
      {"cellularEnabled", state.cellularEnabled},
      {"multipleSim", state.multipleSim}};
}

std::string textOf(const Json& value) {
  return value.dump(/*indent=*/-1, ' ', /*ensure_ascii=*/false, Json::error_handler_t::replace);
}

}  // namespace

std::string interfacesJson(std::span<const BasicInterface> interfaces) {
  return textOf(listToJson(interfaces));
}

std::string stateJson(const NetworkState& state, NetworkSourceCategory asked, bool complete,
                      const std::optional<std::string>& wifi) {
  std::string text = textOf({{"complete", complete}, {"state", askedPartOf(state, asked)}});
  if (wifi) text.insert(text.size() - 1, ",\"wifi\":" + *wifi);
  return text;
}

}  // namespace lanternfold
