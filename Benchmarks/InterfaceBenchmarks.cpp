// Counters, the interface walk and the resolver against the bare kernel dumps, at 8, 1,000 and
// 10,000 links, each size in a network namespace of its own.
#include <array>
#include <memory>
#include <optional>
#include <string>
#include <sys/socket.h>
#include <vector>

#include <benchmark/benchmark.h>

#include "Benchmarks/BareDump.h"
#include "Benchmarks/BenchmarkNamespace.h"
#include "Benchmarks/Groups.h"
#include "NetBase/LiteralInterfaceNaming.h"
#include "NetBase/SNUtils.h"
#include "NetworkMonitor/Interfaces/PosixInterfaceResolver.h"
#include "PlatformLinux/System/LinuxConnectionMetricsReader.h"
#include "PlatformLinux/System/LinuxNetworkConfiguration.h"
#include "PlatformLinux/System/LinuxNetworkKernel.h"
#include "PlatformLinux/System/LinuxResolverConfiguration.h"
#include "PlatformLinux/System/UdevHardwareDatabase.h"
#include "Support/FatalError.h"

namespace lanternfold {

namespace {

constexpr std::array<std::size_t, 3> linkCounts = {8, 1'000, 10'000};
constexpr double counterAim = 1.3;
constexpr double walkAim = 1.5;
constexpr double noAim = 0;
// The resolver is quadratic in the links that it lists.
constexpr std::size_t mostResolvedLinks = 1'000;

class SilentLog final : public DiagnosticLog {
 public:
  void line(std::string_view /*text*/) override {}
};

void bareCounters(benchmark::State& state) {
  BareDump dump;
  const NetlinkRequest request = statisticsDumpRequest();
  for (auto iteration : state) benchmark::DoNotOptimize(dump.run(request));
}

void readCounters(benchmark::State& state, std::size_t linkCount) {
  LinuxConnectionMetricsReader reader;
  // The names, which only the first reading asks for.
  if (!reader.read()) fatalError("the reader does not read");
  for (auto iteration : state) {
    const auto metrics = reader.read();
    if (!metrics || metrics->size() != linkCount) fatalError("the reader left links out");
    benchmark::DoNotOptimize(metrics->value(0).recvBytes);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(linkCount));
}

void bareTables(benchmark::State& state) {
  BareDump dump;
  const std::vector requests = {linkDumpRequest(), addressDumpRequest(), routeDumpRequest(AF_INET)};
  for (auto iteration : state) {
    for (const NetlinkRequest& request : requests) benchmark::DoNotOptimize(dump.run(request));
  }
}

void readTables(benchmark::State& state, std::size_t linkCount) {
  const LinuxNetworkKernel kernel;
  for (auto iteration : state) {
    const auto reading = kernel.beginReading();
    if (reading->addressEntries().value().size() < linkCount) fatalError("links are missing");
    benchmark::DoNotOptimize(reading->linkRecords().value().size());
    benchmark::DoNotOptimize(reading->routes(RouteFamily::ipv4).value().size());
  }
}

class EnglishTexts final : public StringTable {
 public:
  std::string localized(std::string_view key) const override { return std::string(key); }
};

void resolveInterfaces(benchmark::State& state, std::size_t linkCount) {
  const LinuxNetworkKernel kernel;
  const LinuxResolverConfiguration resolverConfiguration;
  const LiteralInterfaceNaming naming;
  SilentLog log;
  const UdevHardwareDatabase database;
  const LinuxNetworkConfiguration configuration(database);
  const EnglishTexts texts;
  PosixInterfaceResolver resolver(std::make_shared<LinuxConnectionMetricsReader>(),
                                  NetUtils(SNUtils(kernel, resolverConfiguration, naming, log)),
                                  configuration, texts);
  for (auto iteration : state) {
    if (resolver.interfaces().size() != linkCount) fatalError("the resolver left links out");
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(linkCount));
}

void walkInterfaces(benchmark::State& state, std::size_t linkCount) {
  const LinuxNetworkKernel kernel;
  const LinuxResolverConfiguration resolver;
  const LiteralInterfaceNaming naming;
  SilentLog log;
  const SNUtils utilities(kernel, resolver, naming, log);
  for (auto iteration : state) {
    const auto interfaces = utilities.inetInterfacesWithPrefix(std::nullopt, std::nullopt);
    if (interfaces.size() != linkCount) fatalError("the walk left links out");
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(linkCount));
}

void run(std::size_t linkCount, RatioTable& reporter) {
  const std::string suffix = "/" + std::to_string(linkCount);
  addBenchmark("counters-bare" + suffix, bareCounters);
  addBenchmark("counters" + suffix,
               [=](benchmark::State& state) { readCounters(state, linkCount); });
  addBenchmark("walk-bare" + suffix, bareTables);
  addBenchmark("tables" + suffix, [=](benchmark::State& state) { readTables(state, linkCount); });
  addBenchmark("walk" + suffix, [=](benchmark::State& state) { walkInterfaces(state, linkCount); });
  if (linkCount <= mostResolvedLinks) {
    addBenchmark("resolver" + suffix,
                 [=](benchmark::State& state) { resolveInterfaces(state, linkCount); });
  }
  runBenchmarks(reporter);
}

std::vector<RatioTable::Row> rowsOf(std::size_t linkCount) {
  const std::string suffix = "/" + std::to_string(linkCount);
  const std::string links = std::to_string(linkCount) + " links";
  return {
      {"counters, " + links, "counters" + suffix, "counters-bare" + suffix, counterAim},
      {"kernel tables, " + links, "tables" + suffix, "walk-bare" + suffix, walkAim},
      {"interface walk, " + links, "walk" + suffix, "walk-bare" + suffix, walkAim},
      {"resolver, " + links, "resolver" + suffix, "walk-bare" + suffix, noAim},
  };
}

}  // namespace

std::optional<RatioTable::Table> measureInterfaces(RatioTable& reporter) {
  RatioTable::Table table{.title = "Counters and the interface walk",
                          .figure = RatioTable::Figure::processorTime,
                          .rows = {}};
  for (const std::size_t linkCount : linkCounts) {
    const auto rows = rowsOf(linkCount);
    if (!areWanted(rows)) continue;
    if (!enterBenchmarkNamespace(linkCount)) return std::nullopt;
    run(linkCount, reporter);
    table.rows.insert(table.rows.end(), rows.begin(), rows.end());
  }
  return table;
}

}  // namespace lanternfold
