// Runs the groups of benchmarks and then prints their tables.
#include <algorithm>
#include <regex>
#include <utility>

#include <benchmark/benchmark.h>

#include "Benchmarks/Groups.h"

namespace lanternfold {

namespace {

bool isWanted(const std::string& name) {
  std::string filter = benchmark::GetBenchmarkFilter();
  if (filter.empty() || filter == "all") return true;
  const bool isExclusion = filter.starts_with('-');
  if (isExclusion) filter.erase(0, 1);
  // The library's own name goes on behind a slash, with the repetitions and the kind of time.
  return std::regex_search(name + "/", std::regex(filter, std::regex::extended)) != isExclusion;
}

}  // namespace

bool areWanted(const std::vector<RatioTable::Row>& rows) {
  return std::ranges::any_of(
      rows, [](const auto& row) { return isWanted(row.subject) || isWanted(row.baseline); });
}

benchmark::internal::Benchmark* addBenchmark(const std::string& name,
                                             std::function<void(benchmark::State&)> work) {
  constexpr int repetitions = 7;
  return benchmark::RegisterBenchmark(name.c_str(), std::move(work))
      ->Unit(benchmark::kMicrosecond)
      ->Repetitions(repetitions);
}

void runBenchmarks(RatioTable& reporter) {
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::ClearRegisteredBenchmarks();
}

}  // namespace lanternfold

int main(int argumentCount, char** arguments) {
  benchmark::Initialize(&argumentCount, arguments);
  lanternfold::RatioTable reporter;
  const auto metricsFile = lanternfold::measureMetricsFile(reporter);
  const auto sampling = lanternfold::measureSampling(reporter);
  const auto service = lanternfold::measureService(reporter);
  const auto drawing = lanternfold::measureDrawing(reporter);
  const auto exchanges = lanternfold::measureExchanges(reporter);
  const auto wifi = lanternfold::measureWifi(reporter);
  const auto joinedWifi = lanternfold::measureJoinedWifi(reporter);
  const auto interfaces = lanternfold::measureInterfaces(reporter);
  reporter.print(metricsFile);
  reporter.print(sampling);
  reporter.print(service);
  reporter.print(drawing);
  reporter.print(exchanges);
  reporter.print(wifi);
  for (const auto& table : joinedWifi) reporter.print(table);
  if (interfaces) reporter.print(*interfaces);
  benchmark::Shutdown();
  return interfaces ? 0 : 1;
}
