#include "PlatformLinux/System/LinuxWifiClient.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <net/if.h>
#include <utility>

#include <linux/netlink.h>
#include <linux/nl80211.h>

#include "PlatformLinux/Netlink/LinkMessage.h"
#include "PlatformLinux/Netlink/LinkRequest.h"
#include "PlatformLinux/Netlink/WirelessInterfaceMessage.h"
#include "PlatformLinux/System/GenericFamily.h"
#include "PlatformLinux/System/TableDump.h"
#include "PlatformLinux/System/WifiCellNews.h"
#include "PlatformLinux/Wifi/WifiComposition.h"
#include "PlatformLinux/Wifi/WifiDefaultInterface.h"
#include "PlatformLinux/Wifi/WifiEvents.h"
#include "PlatformLinux/Wifi/WifiRegulatoryMessage.h"
#include "PlatformLinux/Wifi/WifiRequests.h"
#include "Support/FatalError.h"

namespace lanternfold {

namespace {

/// How many interfaces are asked for the network they joined when the kernel names none.
constexpr std::size_t mostCandidatesAsked = 16;

/// None for the many others of the list, and for what cannot be decoded.
std::optional<WifiBssMessage> joinedBss(const NetlinkMessage& message) {
  auto cell = decodeJoinedBss(message);
  return cell ? *std::move(cell) : std::nullopt;
}

/// A table that the driver does not have is as good as an empty one.
template <typename Decode>
auto readTable(NetlinkSocket& socket, const NetlinkRequest& request, Decode decode) {
  auto table = dumpTable(socket, request, decode);
  return table ? *std::move(table) : typename decltype(table)::value_type();
}

std::optional<std::string> readCountry(NetlinkSocket& socket, std::uint16_t messageType,
                                       std::uint32_t radioIndex) {
  const auto answers =
      readTable(socket, wifiRegulatoryRequest(messageType, radioIndex), decodeWifiRegulatory);
  return answers.empty() ? std::nullopt : answers.back().countryCode;
}

/// The interfaces that can be the default one. Errors: those of the dump; malformed when there is
/// none that can be, and something was listed that may be one but makes no sense.
std::expected<std::vector<WifiInterfaceMessage>, NetworkKernelError> readCandidates(
    NetlinkSocket& socket, std::uint16_t messageType) {
  bool someMadeNoSense = false;
  const auto decode = [&](const NetlinkMessage& message) {
    auto interface = decodeWifiInterface(message);
    someMadeNoSense = someMadeNoSense || !interface;
    return interface;
  };
  const auto interfaces = dumpTable(socket, wirelessInterfaceDumpRequest(messageType), decode);
  if (!interfaces) return std::unexpected(interfaces.error());
  auto candidates = defaultInterfaceCandidates(*interfaces);
  if (candidates.empty() && someMadeNoSense) return std::unexpected(NetworkKernelError::malformed);
  return candidates;
}

/// Whether the kernel lists the access point of one of the cells, as far as it lists any. Among the
/// members of an ad hoc network there need be none.
bool peersAgree(const WifiFacts& facts) {
  if (facts.interface.interfaceType != NL80211_IFTYPE_STATION || facts.stations.empty()) {
    return true;
  }
  return std::ranges::any_of(facts.stations, [&](const WifiStationMessage& station) {
    return isPeerOf(facts.joinedCells, station);
  });
}

}  // namespace

WifiSources systemWifiSources() {
  return {.genericNetlink = [] { return openNetlinkChannel(NETLINK_GENERIC); },
          .routeNetlink = [] { return openNetlinkChannel(NETLINK_ROUTE); },
          .deviceTree = DeviceTree(),
          .cellsMayHaveChanged =
              [news = std::make_shared<WifiCellNews>()] { return news->mayHaveChanged(); }};
}

LinuxWifiClient::LinuxWifiClient(MayTellNames mayTellNames, WifiSources sources)
    : mayTellNames_(std::move(mayTellNames)),
      deviceTree_(std::move(sources.deviceTree)),
      genericSockets_(std::move(sources.genericNetlink)),
      routeSockets_(std::move(sources.routeNetlink)),
      cellMemory_(std::move(sources.cellsMayHaveChanged)) {
  if (!mayTellNames_) fatalError("a Wi-Fi client was made that cannot ask for the user's consent");
}

std::optional<WifiInterface> LinuxWifiClient::interface() const {
  auto full = report();
  if (!full || !*full) return std::nullopt;
  return std::move((*full)->interface);
}

WifiReading LinuxWifiClient::report() const {
  auto socket = genericSockets_.take();
  if (!socket) return std::unexpected(socket.error());
  const Facts facts = readFacts(*socket);
  genericSockets_.giveBack(*std::move(socket));
  if (!facts) return std::unexpected(facts.error());
  if (!*facts) return std::nullopt;
  // Asked last, so that consent that is taken back meanwhile counts.
  return wifiReportOf(**facts,
                      mayTellNames_() ? WifiNameDisclosure::told : WifiNameDisclosure::withheld);
}

LinuxWifiClient::Facts LinuxWifiClient::readFacts(NetlinkSocket& socket) const {
  const JoinedCellMemory::Reading reading = cellMemory_.begin();
  const auto family = findGenericFamily(socket, wifiFamilyName);
  if (!family) return std::unexpected(family.error());
  if (!*family) return std::nullopt;
  const std::uint16_t messageType = (*family)->messageType;
  auto listed = readCandidates(socket, messageType);
  if (!listed) return std::unexpected(listed.error());
  std::vector<WifiInterfaceMessage>& candidates = *listed;
  if (candidates.empty()) return std::nullopt;
  const Conversation conversation{.socket = socket, .messageType = messageType, .reading = reading};
  auto [facts, cellsWereKept] = chooseInterface(conversation, std::move(candidates));
  facts.isPoweredOn = isPoweredOn(facts);
  const std::uint32_t index = facts.interface.index;
  if (facts.interface.ssid || !facts.joinedCells.empty()) {
    facts.stations =
        readTable(socket, wifiStationDumpRequest(messageType, index), decodeWifiStation);
    if (cellsWereKept && !peersAgree(facts)) {
      facts.joinedCells = listedCells(conversation, facts.interface);
    }
    facts.survey = readTable(socket, wifiSurveyDumpRequest(messageType, index), decodeWifiSurvey);
  }
  facts.countryCode = readCountry(socket, messageType, facts.interface.radioIndex);
  return std::move(facts);
}

/// The default interface with the cells it has joined. Where the kernel names no network, as
/// kernels 5.19.2 to 6.0 do, the first interface that has joined a cell is the one.
LinuxWifiClient::Chosen LinuxWifiClient::chooseInterface(
    const Conversation& conversation, std::vector<WifiInterfaceMessage> candidates) const {
  Chosen chosen;
  chosen.facts.interface = candidates.front();
  const std::size_t count =
      candidates.front().ssid ? 1 : std::min(candidates.size(), mostCandidatesAsked);
  for (std::size_t each = 0; each < count; ++each) {
    if (!joinsNetworks(candidates[each])) continue;
    auto kept = cellMemory_.cellsOf(candidates[each], conversation.reading);
    chosen.cellsWereKept = kept.has_value();
    auto cells = kept ? *std::move(kept) : listedCells(conversation, candidates[each]);
    if (cells.empty()) continue;
    chosen.facts.interface = std::move(candidates[each]);
    chosen.facts.joinedCells = std::move(cells);
    break;
  }
  return chosen;
}

/// As the kernel lists them now. Not kept are a refusal, and a network that is named but not
/// listed, which cannot last.
JoinedCellMemory::Cells LinuxWifiClient::listedCells(const Conversation& conversation,
                                                     const WifiInterfaceMessage& interface) const {
  const NetlinkRequest request = wifiScanDumpRequest(conversation.messageType, interface.index);
  auto cells = dumpTable(conversation.socket, request, joinedBss);
  if (!cells) return {};
  if (!cells->empty() || !interface.ssid) {
    cellMemory_.keep(interface, *cells, conversation.reading);
  }
  return *std::move(cells);
}

bool LinuxWifiClient::isPoweredOn(const WifiFacts& facts) const {
  const WifiInterfaceMessage& interface = facts.interface;
  if (interface.name.size() >= IFNAMSIZ) return false;
  auto socket = routeSockets_.take();
  if (!socket) return false;
  const auto links = readTable(*socket, linkByNameRequest(interface.name), decodeLinkMessage);
  routeSockets_.giveBack(*std::move(socket));
  const bool isUp = std::ranges::any_of(links, [&](const LinkMessage& link) {
    return link.index == interface.index && (link.flags & IFF_UP) != 0;
  });
  if (!isUp || !facts.joinedCells.empty()) return isUp;
  return !deviceTree_.radioIsBlocked(interface.name, interface.index);
}

}  // namespace lanternfold
