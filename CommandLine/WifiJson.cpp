#include "CommandLine/WifiJson.h"

#include <string_view>
#include <utility>

#include <nlohmann/json.hpp>

namespace lanternfold {

namespace {

using Json = nlohmann::ordered_json;

template <typename Value>
Json orNull(const std::optional<Value>& value) {
  return value ? Json(*value) : Json(nullptr);
}

/// A figure of the seam's record, in which 0 stands for what the driver does not give.
template <typename Number>
Json orNullIfZero(Number number) {
  return number == Number{} ? Json(nullptr) : Json(number);
}

std::string_view caseName(WifiInterfaceMode mode) {
  switch (mode) {
    case WifiInterfaceMode::none:
      return "none";
    case WifiInterfaceMode::station:
      return "station";
    case WifiInterfaceMode::ibss:
      return "ibss";
    case WifiInterfaceMode::hostAP:
      return "hostAP";
  }
  return "unknown";
}

std::string_view caseName(WifiPhyMode mode) {
  switch (mode) {
    case WifiPhyMode::none:
      return "none";
    case WifiPhyMode::mode11a:
      return "mode11a";
    case WifiPhyMode::mode11b:
      return "mode11b";
    case WifiPhyMode::mode11g:
      return "mode11g";
    case WifiPhyMode::mode11n:
      return "mode11n";
    case WifiPhyMode::mode11ac:
      return "mode11ac";
    case WifiPhyMode::mode11ax:
      return "mode11ax";
    case WifiPhyMode::mode11be:
      return "mode11be";
  }
  return "unknown";
}

std::string_view caseName(WifiSecurity security) {
  switch (security) {
    case WifiSecurity::none:
      return "none";
    case WifiSecurity::wep:
      return "wep";
    case WifiSecurity::wpaPersonal:
      return "wpaPersonal";
    case WifiSecurity::wpaPersonalMixed:
      return "wpaPersonalMixed";
    case WifiSecurity::wpa2Personal:
      return "wpa2Personal";
    case WifiSecurity::personal:
      return "personal";
    case WifiSecurity::dynamicWep:
      return "dynamicWep";
    case WifiSecurity::wpaEnterprise:
      return "wpaEnterprise";
    case WifiSecurity::wpaEnterpriseMixed:
      return "wpaEnterpriseMixed";
    case WifiSecurity::wpa2Enterprise:
      return "wpa2Enterprise";
    case WifiSecurity::enterprise:
      return "enterprise";
    case WifiSecurity::wpa3Personal:
      return "wpa3Personal";
    case WifiSecurity::wpa3Enterprise:
      return "wpa3Enterprise";
    case WifiSecurity::wpa3Transition:
      return "wpa3Transition";
    case WifiSecurity::owe:
      return "owe";
    case WifiSecurity::oweTransition:
      return "oweTransition";
    case WifiSecurity::unknown:
      break;
  }
  return "unknown";
}

std::string_view caseName(WifiChannelBand band) {
  switch (band) {
    case WifiChannelBand::band2GHz:
      return "band2GHz";
    case WifiChannelBand::band5GHz:
      return "band5GHz";
    case WifiChannelBand::band6GHz:
      return "band6GHz";
    case WifiChannelBand::unknown:
      break;
  }
  return "unknown";
}

std::string_view caseName(WifiChannelWidth width) {
  switch (width) {
    case WifiChannelWidth::width20MHz:
      return "width20MHz";
    case WifiChannelWidth::width40MHz:
      return "width40MHz";
    case WifiChannelWidth::width80MHz:
      return "width80MHz";
    case WifiChannelWidth::width160MHz:
      return "width160MHz";
    case WifiChannelWidth::width320MHz:
      return "width320MHz";
    case WifiChannelWidth::unknown:
      break;
  }
  return "unknown";
}

std::string_view caseName(WifiGeneration generation) {
  switch (generation) {
    case WifiGeneration::legacy:
      return "legacy";
    case WifiGeneration::ht:
      return "ht";
    case WifiGeneration::vht:
      return "vht";
    case WifiGeneration::he:
      return "he";
    case WifiGeneration::eht:
      return "eht";
  }
  return "unknown";
}

Json generationToJson(const std::optional<WifiGeneration>& generation) {
  return generation ? Json(caseName(*generation)) : Json(nullptr);
}

Json channelToJson(const std::optional<WifiChannel>& channel) {
  if (!channel) return nullptr;
  return {{"channelNumber", channel->channelNumber},
          {"channelBand", caseName(channel->channelBand)},
          {"channelWidth", caseName(channel->channelWidth)}};
}

Json rateToJson(const std::optional<WifiRate>& rate) {
  if (!rate) return nullptr;
  return {{"megabits", rate->bitrate ? Json(rate->megabits()) : Json(nullptr)},
          {"generation", caseName(rate->generation)},
          {"modulation", orNull(rate->modulation)},
          {"streams", orNull(rate->streams)},
          {"widthMegahertz", rate->widthMegahertz},
          {"guardIntervalNanoseconds", orNull(rate->guardIntervalNanoseconds)}};
}

Json protectionToJson(const std::optional<WifiProtection>& protection) {
  if (!protection) return nullptr;
  return {{"authentications", protection->authentications},
          {"pairwiseCiphers", protection->pairwiseCiphers},
          {"groupCipher", protection->groupCipher},
          {"managementCipher", orNull(protection->managementCipher)},
          {"offersManagementProtection", protection->offersManagementProtection},
          {"requiresManagementProtection", protection->requiresManagementProtection}};
}

Json linkToJson(const WifiLink& link) {
  return {{"linkId", orNull(link.linkId)},
          {"bssid", orNull(link.bssid)},
          {"channel", channelToJson(link.channel)},
          {"frequencyMegahertz", orNull(link.frequencyMegahertz)},
          {"widthMegahertz", orNull(link.widthMegahertz)},
          {"center1Megahertz", orNull(link.center1Megahertz)},
          {"center2Megahertz", orNull(link.center2Megahertz)},
          {"generation", generationToJson(link.generation)},
          {"signalDbm", orNull(link.signalDbm)},
          {"signalAverageDbm", orNull(link.signalAverageDbm)},
          {"transmitRate", rateToJson(link.transmitRate)},
          {"receiveRate", rateToJson(link.receiveRate)}};
}

Json transmitPowerDbm(const std::optional<std::int64_t>& millibels) {
  constexpr double millibelsOfDecibel = 100;
  return millibels ? Json(static_cast<double>(*millibels) / millibelsOfDecibel) : Json(nullptr);
}

Json interfaceToJson(const WifiReport& report) {
  const WifiInterface& interface = report.interface;
  return {{"interface", orNull(interface.interfaceName)},
          {"interfaceIndex", report.interfaceIndex},
          {"radioIndex", report.radioIndex},
          {"hardwareAddress", orNull(report.hardwareAddress)},
          {"interfaceMode", caseName(interface.interfaceMode)},
          {"powerOn", interface.powerOn},
          {"countryCode", orNull(interface.countryCode)},
          {"transmitPowerDbm", transmitPowerDbm(report.transmitPowerMillibels)},
          {"transmitPowerMilliwatts",
           report.transmitPowerMillibels ? Json(interface.transmitPower) : Json(nullptr)}};
}

Json networkToJson(const WifiReport& report) {
  const WifiInterface& interface = report.interface;
  const bool isJoined = report.isJoined;
  return {{"isJoined", isJoined},
          {"namesWithheld", report.namesWithheld},
          {"ssid", orNull(interface.ssid)},
          {"bssid", orNull(interface.bssid)},
          {"activePHYMode", isJoined ? Json(caseName(interface.activePHYMode)) : Json(nullptr)},
          {"generation", generationToJson(report.generation)},
          {"security", isJoined ? Json(caseName(interface.security)) : Json(nullptr)},
          {"rsn", protectionToJson(report.rsn)},
          {"wpa", protectionToJson(report.wpa)},
          {"signalDbm", orNullIfZero(interface.rssiValue)},
          {"signalAverageDbm", orNull(report.signalAverageDbm)},
          {"noiseDbm", orNull(report.noiseDbm)},
          {"transmitRateMegabits", orNullIfZero(interface.transmitRate)},
          {"expectedThroughputKilobits", orNull(report.expectedThroughputKilobits)},
          {"connectedSeconds", orNull(report.connectedSeconds)}};
}

Json toJson(const WifiReport& report) {
  Json object = interfaceToJson(report);
  object.update(networkToJson(report));
  Json links = Json::array();
  for (const WifiLink& link : report.links) links.push_back(linkToJson(link));
  object["links"] = std::move(links);
  return object;
}

}  // namespace

std::string wifiJson(const std::optional<WifiReport>& report) {
  const Json json = report ? toJson(*report) : Json(nullptr);
  return json.dump(/*indent=*/-1, ' ', /*ensure_ascii=*/false, Json::error_handler_t::replace);
}

}  // namespace lanternfold
