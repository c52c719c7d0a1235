// Encoding and decoding the metrics file against the JSON library alone, on the same text.
#include <array>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <nlohmann/json.hpp>

#include "Benchmarks/Groups.h"
#include "Benchmarks/GrowingCounters.h"
#include "NetworkMonitor/Metrics/ConnectionMetricsFileJson.h"
#include "Support/FatalError.h"

namespace lanternfold {

namespace {

constexpr std::array<std::size_t, 4> interfaceCounts = {8, 100, 1'000, 10'000};

ConnectionMetricsData dataOf(std::size_t interfaceCount) {
  const auto counters = GrowingCounters(interfaceCount).read().value();
  ConnectionMetricsData data;
  for (std::size_t i = 0; i < counters.size(); ++i) {
    setMetrics(data, counters.name(i), ConnectionMetricsType::original, counters.value(i));
    setMetrics(data, counters.name(i), ConnectionMetricsType::adjusted, counters.value(i));
  }
  return data;
}

std::string textOf(const ConnectionMetricsData& data) {
  return encodeConnectionMetricsFile(data).value().text;
}

void encode(benchmark::State& state, const ConnectionMetricsData& data) {
  for (auto iteration : state) benchmark::DoNotOptimize(textOf(data).size());
}

void dumpWithLibrary(benchmark::State& state, const std::string& text) {
  const auto document = nlohmann::ordered_json::parse(text);
  if (document.dump() != text) fatalError("the library writes another text");
  for (auto iteration : state) benchmark::DoNotOptimize(document.dump().size());
}

void decode(benchmark::State& state, const ConnectionMetricsData& data, const std::string& text) {
  if (decodeConnectionMetricsFile(text) != data) fatalError("the file is not read back");
  for (auto iteration : state) {
    benchmark::DoNotOptimize(decodeConnectionMetricsFile(text).value().size());
  }
}

void parseWithLibrary(benchmark::State& state, const std::string& text) {
  for (auto iteration : state) benchmark::DoNotOptimize(nlohmann::json::parse(text).size());
}

void run(const ConnectionMetricsData& data, const std::string& text, const std::string& suffix,
         RatioTable& reporter) {
  addBenchmark("encode" + suffix, [&](benchmark::State& state) { encode(state, data); });
  addBenchmark("encode-library" + suffix,
               [&](benchmark::State& state) { dumpWithLibrary(state, text); });
  addBenchmark("decode" + suffix, [&](benchmark::State& state) { decode(state, data, text); });
  addBenchmark("decode-library" + suffix,
               [&](benchmark::State& state) { parseWithLibrary(state, text); });
  runBenchmarks(reporter);
}

}  // namespace

RatioTable::Table measureMetricsFile(RatioTable& reporter) {
  constexpr double aim = 1;
  RatioTable::Table table{
      .title = "JSON of the metrics file", .figure = RatioTable::Figure::speed, .rows = {}};
  for (const std::size_t count : interfaceCounts) {
    const ConnectionMetricsData data = dataOf(count);
    const std::string text = textOf(data);
    const std::string suffix = "/" + std::to_string(count);
    const std::string title = ", " + std::to_string(count) + " interfaces";
    const std::vector<RatioTable::Row> rows{
        {"encode" + title, "encode" + suffix, "encode-library" + suffix, aim, text.size()},
        {"decode" + title, "decode" + suffix, "decode-library" + suffix, aim, text.size()},
    };
    if (!areWanted(rows)) continue;
    run(data, text, suffix, reporter);
    table.rows.insert(table.rows.end(), rows.begin(), rows.end());
  }
  return table;
}

}  // namespace lanternfold
