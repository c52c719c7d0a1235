#include "PlatformLinux/Wifi/WifiComposition.h"

#include <algorithm>
#include <utility>

#include "PlatformLinux/Wifi/LinkArray.h"
#include "PlatformLinux/Wifi/SuiteNames.h"
#include "PlatformLinux/Wifi/WifiChannelMapping.h"
#include "PlatformLinux/Wifi/WifiDefaultInterface.h"
#include "PlatformLinux/Wifi/WifiModeMapping.h"
#include "PlatformLinux/Wifi/WifiNames.h"
#include "PlatformLinux/Wifi/WifiSecurityMapping.h"

namespace lanternfold {

namespace {

constexpr std::int32_t millibelsOfDecibel = 100;

/// The parts that speak of one link; any may be missing.
struct LinkParts {
  std::optional<std::uint8_t> linkId;
  const WifiChannelDefinition* channel = nullptr;
  const WifiBssMessage* cell = nullptr;
  const WifiStationFigures* figures = nullptr;
};

// The peer of the joined cell; of an ad hoc network whose members have other addresses, its only
// one. Direct peers stand in the same list.
const WifiStationMessage* peerOf(const WifiFacts& facts) {
  for (const WifiStationMessage& station : facts.stations) {
    if (isPeerOf(facts.joinedCells, station)) return &station;
  }
  return facts.stations.size() == 1 ? &facts.stations.front() : nullptr;
}

template <typename Records>
const typename Records::value_type* ofLink(const Records& records, std::uint8_t linkId) {
  const auto record = std::ranges::find(records, linkId, &Records::value_type::linkId);
  return record == records.end() ? nullptr : &*record;
}

std::vector<LinkParts> partsOfLinks(const WifiFacts& facts, const WifiStationMessage* peer) {
  std::vector<LinkParts> links;
  for (std::uint8_t linkId = 0; linkId < mostWifiLinks; ++linkId) {
    const WifiInterfaceLink* const link = ofLink(facts.interface.links, linkId);
    const WifiBssMessage* const cell = ofLink(facts.joinedCells, linkId);
    if (link == nullptr && cell == nullptr) continue;
    const WifiStationLink* const station = peer == nullptr ? nullptr : ofLink(peer->links, linkId);
    links.push_back({.linkId = linkId,
                     .channel = link == nullptr ? nullptr : &link->channel,
                     .cell = cell,
                     .figures = station == nullptr ? nullptr : &station->figures});
  }
  if (!links.empty()) return links;
  return {{.linkId = std::nullopt,
           .channel = &facts.interface.channel,
           .cell = facts.joinedCells.empty() ? nullptr : &facts.joinedCells.front(),
           .figures = peer == nullptr ? nullptr : &peer->figures}};
}

// Some drivers tell no channel, or no width; the joined cell and the rate tell of them as well.
void fillChannel(const LinkParts& parts, WifiLink& link) {
  if (parts.channel != nullptr) {
    link.frequencyMegahertz = parts.channel->frequencyMegahertz;
    link.center1Megahertz = parts.channel->center1Megahertz;
    link.center2Megahertz = parts.channel->center2Megahertz;
    if (parts.channel->width) link.widthMegahertz = megahertzOfWidth(*parts.channel->width);
  }
  if (!link.frequencyMegahertz && parts.cell != nullptr) {
    link.frequencyMegahertz = parts.cell->frequencyMegahertz;
  }
  if (!link.widthMegahertz && link.transmitRate) {
    link.widthMegahertz = link.transmitRate->widthMegahertz;
  }
  if (!link.frequencyMegahertz) return;
  link.channel = WifiChannel{.channelNumber = channelNumberOfFrequency(*link.frequencyMegahertz),
                             .channelBand = bandOfFrequency(*link.frequencyMegahertz),
                             .channelWidth = widthOfMegahertz(link.widthMegahertz.value_or(0))};
}

std::optional<std::int64_t> signalOf(const LinkParts& parts) {
  if (parts.figures != nullptr && parts.figures->signalDbm) return *parts.figures->signalDbm;
  if (parts.cell == nullptr || !parts.cell->signalMillibels) return std::nullopt;
  return *parts.cell->signalMillibels / millibelsOfDecibel;
}

WifiLink linkOf(const LinkParts& parts, WifiNameDisclosure names) {
  WifiLink link;
  link.linkId = parts.linkId;
  if (parts.figures != nullptr) {
    link.signalAverageDbm = parts.figures->signalAverageDbm;
    link.transmitRate = parts.figures->transmitRate;
    link.receiveRate = parts.figures->receiveRate;
  }
  link.signalDbm = signalOf(parts);
  fillChannel(parts, link);
  if (parts.cell == nullptr && !link.transmitRate) return link;
  if (parts.cell != nullptr && names == WifiNameDisclosure::told) {
    link.bssid = hardwareAddressText(parts.cell->bssid);
  }
  link.generation = generationInUse(
      {.transmitRate = link.transmitRate,
       .receiveRate = link.receiveRate,
       .channelWidth = parts.channel == nullptr ? std::nullopt : parts.channel->width,
       .elements = parts.cell == nullptr ? nullptr : &parts.cell->elements});
  return link;
}

WifiProtection protectionOf(const SecurityElement& element) {
  WifiProtection protection;
  for (const SuiteSelector suite : element.authentications) {
    protection.authentications.push_back(authenticationName(suite));
  }
  for (const SuiteSelector suite : element.pairwiseCiphers) {
    protection.pairwiseCiphers.push_back(cipherName(suite));
  }
  protection.groupCipher = cipherName(element.groupCipher);
  if (element.managementCipher) protection.managementCipher = cipherName(*element.managementCipher);
  protection.offersManagementProtection = element.offersManagementProtection;
  protection.requiresManagementProtection = element.requiresManagementProtection;
  return protection;
}

// The kernel's own name of the network first: the elements of a network that hides its name may
// lack it. Kernels 5.19.2 to 6.0 tell it by the elements alone.
std::optional<std::string> ssidOf(const WifiFacts& facts) {
  if (facts.interface.ssid) return ssidText(*facts.interface.ssid);
  for (const WifiBssMessage& cell : facts.joinedCells) {
    if (tellsName(cell.elements)) return ssidText(*cell.elements.ssid);
  }
  return std::nullopt;
}

// Only of a channel that is in use; of several (one radio may serve more than one interface) that
// of the link.
std::optional<std::int64_t> noiseOf(const WifiFacts& facts, const WifiLink& link) {
  const WifiSurveyMessage* inUse = nullptr;
  for (const WifiSurveyMessage& channel : facts.survey) {
    if (!channel.isInUse || !channel.noiseDbm) continue;
    if (link.frequencyMegahertz && channel.frequencyMegahertz == link.frequencyMegahertz) {
      return *channel.noiseDbm;
    }
    if (!link.frequencyMegahertz) inUse = &channel;
  }
  return inUse == nullptr ? std::nullopt : std::optional<std::int64_t>(*inUse->noiseDbm);
}

std::optional<std::int32_t> transmitPowerOf(const WifiInterfaceMessage& interface) {
  if (interface.transmitPowerMillibels) return interface.transmitPowerMillibels;
  for (const WifiInterfaceLink& link : interface.links) {
    if (link.transmitPowerMillibels) return link.transmitPowerMillibels;
  }
  return std::nullopt;
}

// Under multi-link an older kernel tells the figures of the peer as a whole only.
void fillPeer(const WifiStationMessage& peer, const WifiStationFigures* figuresOfLink,
              WifiReport& report) {
  report.signalAverageDbm = peer.figures.signalAverageDbm;
  report.expectedThroughputKilobits = peer.figures.expectedThroughputKilobits;
  report.connectedSeconds = peer.figures.connectedSeconds;
  const bool linkHasSignal = figuresOfLink != nullptr && figuresOfLink->signalDbm;
  if (!linkHasSignal && peer.figures.signalDbm) {
    report.interface.rssiValue = *peer.figures.signalDbm;
  }
  if (!report.links.front().transmitRate && peer.figures.transmitRate) {
    report.interface.transmitRate = peer.figures.transmitRate->megabits();
  }
}

// Without a cell (the kernel refuses the list) the rates still tell the generation.
void fillNetwork(const WifiFacts& facts, const WifiBssMessage* cell, WifiReport& report) {
  const WifiLink& link = report.links.front();
  const WifiBssMessage* const network =
      cell == nullptr && !facts.joinedCells.empty() ? &facts.joinedCells.front() : cell;
  report.generation = link.generation;
  report.interface.bssid = link.bssid;
  if (link.generation) {
    report.interface.activePHYMode = phyModeOf(
        *link.generation, link.channel ? link.channel->channelBand : WifiChannelBand::unknown,
        network != nullptr && network->elements.onlyOldestRates);
  }
  if (network == nullptr) return;
  report.interface.security = securityOf(network->elements, network->hasPrivacy);
  if (network->elements.rsn) report.rsn = protectionOf(*network->elements.rsn);
  if (network->elements.wpa) report.wpa = protectionOf(*network->elements.wpa);
}

void fillInterface(const WifiFacts& facts, WifiReport& report) {
  const WifiLink& link = report.links.front();
  WifiInterface& interface = report.interface;
  interface.interfaceName = facts.interface.name;
  interface.interfaceMode = modeOfInterfaceType(facts.interface.interfaceType);
  interface.powerOn = facts.isPoweredOn;
  interface.countryCode = facts.countryCode;
  interface.wlanChannel = link.channel;
  interface.rssiValue = link.signalDbm.value_or(0);
  interface.noiseMeasurement = report.noiseDbm.value_or(0);
  interface.transmitPower = milliwattsOfMillibels(transmitPowerOf(facts.interface));
  if (link.transmitRate) interface.transmitRate = link.transmitRate->megabits();
}

}  // namespace

bool isPeerOf(const std::vector<WifiBssMessage>& cells, const WifiStationMessage& station) {
  return std::ranges::any_of(cells, [&](const WifiBssMessage& cell) {
    return station.address == cell.bssid || station.address == cell.peerAddress;
  });
}

WifiReport wifiReportOf(const WifiFacts& facts, WifiNameDisclosure names) {
  const bool canJoin = joinsNetworks(facts.interface);
  const WifiStationMessage* const peer = canJoin ? peerOf(facts) : nullptr;
  const std::vector<LinkParts> links = partsOfLinks(facts, peer);
  WifiReport report;
  for (const LinkParts& parts : links) report.links.push_back(linkOf(parts, names));
  report.interfaceIndex = facts.interface.index;
  report.radioIndex = facts.interface.radioIndex;
  if (facts.interface.address) {
    report.hardwareAddress = hardwareAddressText(*facts.interface.address);
  }
  report.isJoined = canJoin && (facts.interface.ssid || !facts.joinedCells.empty());
  report.noiseDbm = noiseOf(facts, report.links.front());
  report.transmitPowerMillibels = transmitPowerOf(facts.interface);
  fillInterface(facts, report);
  if (!report.isJoined) return report;
  report.namesWithheld = names == WifiNameDisclosure::withheld;
  if (peer != nullptr) fillPeer(*peer, links.front().figures, report);
  fillNetwork(facts, links.front().cell, report);
  if (names == WifiNameDisclosure::told) report.interface.ssid = ssidOf(facts);
  return report;
}

}  // namespace lanternfold
