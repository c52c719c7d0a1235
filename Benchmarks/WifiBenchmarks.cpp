// One complete reading of the Wi-Fi against the bare exchange of the same requests: over a replayed
// kernel anywhere, and over the kernel itself beside the processes of `iw` where there is a joined
// network.
#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <sys/resource.h>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>
#include <linux/netlink.h>

#include "Benchmarks/BareExchange.h"
#include "Benchmarks/Groups.h"
#include "Benchmarks/ReplayedNetlink.h"
#include "Benchmarks/ScratchFolder.h"
#include "Benchmarks/WifiAnswers.h"
#include "PlatformLinux/Netlink/GenericNetlink.h"
#include "PlatformLinux/Netlink/LinkRequest.h"
#include "PlatformLinux/Netlink/WirelessInterfaceMessage.h"
#include "PlatformLinux/System/GenericFamily.h"
#include "PlatformLinux/System/LinuxWifiClient.h"
#include "PlatformLinux/Wifi/WifiRequests.h"
#include "Support/FatalError.h"

namespace lanternfold {

namespace {

constexpr std::array<std::size_t, 2> cellCounts = {1, 300};
constexpr double aim = 1.3;

/// Where a reading asks, and whom about.
struct Place {
  WifiSources sources;
  std::string interfaceName;
  std::uint32_t interfaceIndex = 0;
  std::uint32_t radioIndex = 0;
  std::uint16_t messageType = 0;
};

enum class Cells { listed, kept };

void readWifi(benchmark::State& state, const Place& place, Cells cells) {
  WifiSources sources = place.sources;
  sources.cellsMayHaveChanged = nullptr;
  if (cells == Cells::kept) sources.cellsMayHaveChanged = [] { return false; };
  const LinuxWifiClient client([] { return true; }, std::move(sources));
  // Opens the sockets, and learns of the cells.
  if (!client.interface()) fatalError("there is no Wi-Fi to be read");
  for (auto iteration : state) {
    const auto interface = client.interface();
    if (!interface || !interface->bssid) fatalError("the reading lacks its network");
    benchmark::DoNotOptimize(interface->rssiValue);
  }
}

void exchangeBare(benchmark::State& state, const Place& place, Cells cells) {
  BareExchange generic(place.sources.genericNetlink);
  BareExchange route(place.sources.routeNetlink);
  const std::uint16_t type = place.messageType;
  std::vector requests = {genericFamilyRequest("nl80211"), wirelessInterfaceDumpRequest(type),
                          wifiStationDumpRequest(type, place.interfaceIndex),
                          wifiSurveyDumpRequest(type, place.interfaceIndex),
                          wifiRegulatoryRequest(type, place.radioIndex)};
  if (cells == Cells::listed) requests.push_back(wifiScanDumpRequest(type, place.interfaceIndex));
  const NetlinkRequest link = linkByNameRequest(place.interfaceName);
  for (auto iteration : state) {
    for (const NetlinkRequest& request : requests) benchmark::DoNotOptimize(generic.run(request));
    benchmark::DoNotOptimize(route.run(link));
  }
}

double secondsOf(const timeval& time) {
  constexpr double microsecond = 1e-6;
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * microsecond;
}

double processorTimeOfChildren() {
  rusage usage{};
  getrusage(RUSAGE_CHILDREN, &usage);
  return secondsOf(usage.ru_utime) + secondsOf(usage.ru_stime);
}

/// The processor time is that of the processes, of the shell that starts them as well.
void runTools(benchmark::State& state, const std::string& name) {
  const std::string commands = "{ iw dev " + name + " link; iw dev " + name + " info; iw dev " +
                               name + " survey dump; } > /dev/null";
  for (auto iteration : state) {
    const double before = processorTimeOfChildren();
    if (std::system(commands.c_str()) != 0) fatalError("iw does not run");
    state.SetIterationTime(processorTimeOfChildren() - before);
  }
}

void addPairs(const std::string& suffix, const Place& place) {
  for (const auto& [name, cells] : {std::pair("-listed", Cells::listed), {"-kept", Cells::kept}}) {
    addBenchmark("wifi" + (name + suffix),
                 [=](benchmark::State& state) { readWifi(state, place, cells); });
    addBenchmark("wifi-bare" + (name + suffix),
                 [=](benchmark::State& state) { exchangeBare(state, place, cells); });
  }
}

std::vector<RatioTable::Row> rowsOf(const std::string& title, const std::string& suffix) {
  return {{title + ", list asked for", "wifi-listed" + suffix, "wifi-bare-listed" + suffix, aim},
          {title + ", cells kept", "wifi-kept" + suffix, "wifi-bare-kept" + suffix, aim}};
}

/// The switch of the radio as sysfs shows it, in files.
void writeDeviceTree(const std::filesystem::path& root) {
  const std::filesystem::path link = root / "class/net/wlan0";
  std::filesystem::create_directories(link / "phy80211/rfkill0");
  std::ofstream(link / "uevent") << "DEVTYPE=wlan\nINTERFACE=wlan0\nIFINDEX="
                                 << replayedInterfaceIndex << "\n";
  std::ofstream(link / "phy80211/rfkill0/soft") << "0\n";
  std::ofstream(link / "phy80211/rfkill0/hard") << "0\n";
}

void measureReplayed(RatioTable& reporter, std::size_t cellCount) {
  const ScratchFolder tree;
  writeDeviceTree(tree.path());
  const ReplayedNetlink generic(true, wifiAnswers(cellCount));
  const ReplayedNetlink route(false, linkAnswers());
  addPairs("/" + std::to_string(cellCount), {.sources = {.genericNetlink = generic.opener(),
                                                         .routeNetlink = route.opener(),
                                                         .deviceTree = DeviceTree(tree.path())},
                                             .interfaceName = "wlan0",
                                             .interfaceIndex = replayedInterfaceIndex,
                                             .radioIndex = 0,
                                             .messageType = replayedMessageType});
  runBenchmarks(reporter);
}

/// The kernel that runs this program; none unless it has joined a network.
std::optional<Place> joinedPlace() {
  auto socket = NetlinkSocket::open(NETLINK_GENERIC);
  const auto type = socket ? genericFamilyType(*socket, "nl80211") : std::nullopt;
  const auto reading = LinuxWifiClient([] { return true; }).report();
  if (!type || !reading || !*reading || !(*reading)->isJoined) return std::nullopt;
  return Place{.sources = systemWifiSources(),
               .interfaceName = (*reading)->interface.interfaceName.value(),
               .interfaceIndex = (*reading)->interfaceIndex,
               .radioIndex = (*reading)->radioIndex,
               .messageType = *type};
}

}  // namespace

RatioTable::Table measureWifi(RatioTable& reporter) {
  RatioTable::Table table{.title = "Wi-Fi over a replayed kernel",
                          .figure = RatioTable::Figure::processorTime,
                          .rows = {}};
  for (const std::size_t cellCount : cellCounts) {
    const std::string cells = std::to_string(cellCount) + (cellCount == 1 ? " cell" : " cells");
    const auto rows = rowsOf(cells, "/" + std::to_string(cellCount));
    if (!areWanted(rows)) continue;
    measureReplayed(reporter, cellCount);
    table.rows.insert(table.rows.end(), rows.begin(), rows.end());
  }
  return table;
}

std::vector<RatioTable::Table> measureJoinedWifi(RatioTable& reporter) {
  const RatioTable::Table exchange{.title = "Wi-Fi of this machine",
                                   .figure = RatioTable::Figure::processorTime,
                                   .rows = rowsOf("this machine", "/joined")};
  const RatioTable::Table tools{
      .title = "Wi-Fi of this machine, elapsed, beside the processor time of three iw",
      .figure = RatioTable::Figure::elapsedTime,
      .rows = {{"list asked for", "wifi-listed/joined", "wifi-iw/joined", 0},
               {"cells kept", "wifi-kept/joined", "wifi-iw/joined", 0}}};
  const auto place = areWanted(exchange.rows) ? joinedPlace() : std::nullopt;
  if (!place) return {};
  addPairs("/joined", *place);
  addBenchmark("wifi-iw/joined", [&](benchmark::State& state) {
    runTools(state, place->interfaceName);
  })->UseManualTime();
  runBenchmarks(reporter);
  return {exchange, tools};
}

}  // namespace lanternfold
