// What the extension and its host say to each other against the JSON library on the same text: the
// view of a large widget as an archive, written and read, and the request for it.
#include <cstddef>
#include <string>
#include <variant>
#include <vector>

#include <benchmark/benchmark.h>
#include <nlohmann/json.hpp>

#include "Benchmarks/Groups.h"
#include "Benchmarks/UntranslatedTexts.h"
#include "NetworkMonitor/Model/NetworkState.h"
#include "NetworkWidgetVexExtension/Views/NetworkStateWidgetEntryView.h"
#include "Support/FatalError.h"
#include "ViewTree/ViewArchive.h"
#include "WidgetService/ServiceMessage.h"

namespace lanternfold {

namespace {

/// The internet, a Wi-Fi and an adapter, with all their rows.
View largeView() {
  const UntranslatedTexts strings;
  const NetworkStateEntry entry{.date = {},
                                .networkState = NetworkState::placeholder(true, strings),
                                .configuration = {},
                                .isSnapshot = true,
                                .isPreview = false};
  return NetworkStateWidgetEntryView{entry}.body(
      {.strings = strings, .widgetFamily = WidgetFamily::large});
}

std::string timelineRequest() {
  return R"({"jsonrpc":"2.0","id":4711,"method":"widget/timeline","params":{)"
         R"("kind":"NetworkAdapterWidget","family":"medium","configuration":{"showTimestamp":true,)"
         R"("adapter":{"identifier":"enp3s0","display":"Ethernet"}},)"
         R"("context":{"isPreview":false}}})";
}

void writeArchive(benchmark::State& state, const View& view) {
  for (auto iteration : state) benchmark::DoNotOptimize(archiveJson(view).size());
}

void readArchive(benchmark::State& state, const View& view, const std::string& text) {
  if (viewOfArchive(text) != view) fatalError("the archive is not read back");
  for (auto iteration : state) {
    benchmark::DoNotOptimize(viewOfArchive(text).value().children.size());
  }
}

void readRequest(benchmark::State& state, const std::string& line) {
  for (auto iteration : state) {
    const HostMessage message = parseHostMessage(line);
    if (!std::holds_alternative<ServiceRequest>(message)) fatalError("the request is refused");
    benchmark::DoNotOptimize(message.index());
  }
}

void dumpWithLibrary(benchmark::State& state, const std::string& text) {
  const auto document = nlohmann::ordered_json::parse(text);
  for (auto iteration : state) benchmark::DoNotOptimize(document.dump().size());
}

void parseWithLibrary(benchmark::State& state, const std::string& text) {
  for (auto iteration : state) benchmark::DoNotOptimize(nlohmann::json::parse(text).size());
}

}  // namespace

RatioTable::Table measureService(RatioTable& reporter) {
  constexpr double aim = 1;
  const View view = largeView();
  const std::string archive = archiveJson(view);
  const std::string request = timelineRequest();
  RatioTable::Table table{
      .title = "What the extension and its host say, " + std::to_string(archive.size()) +
               " bytes of archive and " + std::to_string(request.size()) + " of request",
      .figure = RatioTable::Figure::speed,
      .rows = {
          {"view into archive", "archive-write", "archive-write-library", aim, archive.size()},
          {"archive into view", "archive-read", "archive-read-library", aim, archive.size()},
          {"request", "request-read", "request-read-library", aim, request.size()},
      }};
  addBenchmark("archive-write", [&](benchmark::State& state) { writeArchive(state, view); });
  addBenchmark("archive-write-library",
               [&](benchmark::State& state) { dumpWithLibrary(state, archive); });
  addBenchmark("archive-read", [&](benchmark::State& state) { readArchive(state, view, archive); });
  addBenchmark("archive-read-library",
               [&](benchmark::State& state) { parseWithLibrary(state, archive); });
  addBenchmark("request-read", [&](benchmark::State& state) { readRequest(state, request); });
  addBenchmark("request-read-library",
               [&](benchmark::State& state) { parseWithLibrary(state, request); });
  runBenchmarks(reporter);
  return table;
}

}  // namespace lanternfold
