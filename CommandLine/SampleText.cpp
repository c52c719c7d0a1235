#include "CommandLine/SampleText.h"

#include <array>
#include <cstdint>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "CommandLine/DateText.h"
#include "CommandLine/TextTable.h"
#include "Platform/ByteCounts.h"
#include "Wiring/PrintableText.h"

namespace lanternfold {
namespace {

/// What an adapter has counted in a span of time.
struct Traffic {
  std::uint64_t recvBytes = 0;
  std::uint64_t sentBytes = 0;
  /// None for a span without a known beginning.
  std::optional<double> seconds;
};

std::optional<ConnectionMetrics> metricsIn(const std::optional<RecordedSample>& sample,
                                           std::string_view name) {
  const ConnectionMetrics* metrics = sample ? sample->metrics.find(name) : nullptr;
  return metrics == nullptr ? std::nullopt : std::optional(*metrics);
}

Traffic trafficSince(const std::optional<ConnectionMetrics>& earlier, const ConnectionMetrics& now,
                     double seconds) {
  const bool hasContinued =
      earlier && earlier->recvBytes <= now.recvBytes && earlier->sentBytes <= now.sentBytes;
  if (!hasContinued) return {.recvBytes = now.recvBytes, .sentBytes = now.sentBytes};
  return {.recvBytes = now.recvBytes - earlier->recvBytes,
          .sentBytes = now.sentBytes - earlier->sentBytes,
          .seconds = seconds};
}

/// "1.2 MB (10 KB/s)", or "nothing".
std::string amountText(std::uint64_t byteCount, std::optional<double> seconds,
                       const ByteCountFormatter& bytes) {
  if (byteCount == 0) return "nothing";
  std::string text = bytes.text(byteCount);
  if (!seconds || *seconds <= 0) return text;
  const double rate = static_cast<double>(byteCount) / *seconds;
  return text + " (" + (rate < 1 ? "<1 byte" : bytes.text(static_cast<std::uint64_t>(rate))) +
         "/s)";
}

std::string adapterText(std::string_view name, const Traffic& traffic,
                        const ByteCountFormatter& bytes) {
  return printable(name) + " received " + amountText(traffic.recvBytes, traffic.seconds, bytes) +
         ", sent " + amountText(traffic.sentBytes, traffic.seconds, bytes) +
         (traffic.seconds ? "" : " so far");
}

/// Adapters through which nothing went are left out.
std::string trafficText(const RecordedSample& sample, const std::optional<RecordedSample>& earlier,
                        const std::function<bool(std::string_view name)>& isAdapter,
                        const ByteCountFormatter& bytes) {
  const double seconds =
      earlier ? std::chrono::duration<double>(sample.moment - earlier->moment).count() : 0;
  std::string text;
  for (std::size_t position = 0; position < sample.metrics.size(); ++position) {
    const std::string& name = sample.metrics.name(position);
    if (!isAdapter(name)) continue;
    const Traffic traffic =
        trafficSince(metricsIn(earlier, name), sample.metrics.value(position), seconds);
    if (traffic.recvBytes == 0 && traffic.sentBytes == 0) continue;
    text += (text.empty() ? "" : "; ") + adapterText(name, traffic, bytes);
  }
  return text.empty() ? "no traffic" : text;
}

std::string_view classText(ConnectionBandwidthClass bandwidthClass) {
  switch (bandwidthClass) {
    case ConnectionBandwidthClass::low:
      return "low";
    case ConnectionBandwidthClass::high:
      return "high";
    case ConnectionBandwidthClass::veryHigh:
      return "very high";
    case ConnectionBandwidthClass::idle:
      break;
  }
  return "idle";
}

/// As short as it goes: "120", "0.5".
std::string secondsText(double seconds) {
  std::ostringstream text;
  text << seconds;
  return text.str();
}

std::string padded(std::string text, std::size_t width) {
  if (text.size() < width) text.append(width - text.size(), ' ');
  return text;
}

struct CounterColumn {
  const char* title;
  std::uint64_t ConnectionMetrics::* member;
  bool isOfBytes = false;
  /// Left out while it is zero throughout: with all of them the table is wider than a terminal.
  bool isOfFaults = false;
};

constexpr std::array counterColumns{
    CounterColumn{.title = "Received", .member = &ConnectionMetrics::recvBytes, .isOfBytes = true},
    CounterColumn{.title = "Sent", .member = &ConnectionMetrics::sentBytes, .isOfBytes = true},
    CounterColumn{.title = "Packets in", .member = &ConnectionMetrics::recvPacket},
    CounterColumn{.title = "Packets out", .member = &ConnectionMetrics::sentPacket},
    CounterColumn{
        .title = "Errors in", .member = &ConnectionMetrics::recvError, .isOfFaults = true},
    CounterColumn{
        .title = "Errors out", .member = &ConnectionMetrics::sentError, .isOfFaults = true},
    CounterColumn{
        .title = "Collisions", .member = &ConnectionMetrics::collisions, .isOfFaults = true},
    CounterColumn{.title = "MTU", .member = &ConnectionMetrics::mtu},
};

bool countsAnything(const ConnectionMetricsMap& metrics,
                    std::uint64_t ConnectionMetrics::* member) {
  for (std::size_t position = 0; position < metrics.size(); ++position) {
    if (metrics.value(position).*member > 0) return true;
  }
  return false;
}

}  // namespace

void writeMetricsTable(const ConnectionMetricsMap& metrics, const StringTable& strings,
                       const Console& console) {
  const ByteCountFormatter bytes = byteCountFormatter(ByteCountStyle::decimal, strings);
  std::vector<CounterColumn> counters;
  for (const CounterColumn& column : counterColumns) {
    if (!column.isOfFaults || countsAnything(metrics, column.member)) counters.push_back(column);
  }
  std::vector<TextColumn> columns{{.title = "Name"}};
  for (const CounterColumn& column : counters) {
    columns.push_back({.title = column.title, .alignment = ColumnAlignment::right});
  }
  TextTable table(std::move(columns));
  for (std::size_t position = 0; position < metrics.size(); ++position) {
    std::vector<std::string> cells{metrics.name(position)};
    for (const CounterColumn& column : counters) {
      const std::uint64_t count = metrics.value(position).*column.member;
      cells.push_back(column.isOfBytes ? bytes.text(count) : std::to_string(count));
    }
    table.addRow(std::move(cells));
  }
  table.write(console.output, console.style);
}

std::string sampleLine(const RecordedSample& sample, const std::optional<RecordedSample>& earlier,
                       const std::function<bool(std::string_view name)>& isAdapter,
                       const StringTable& strings, TextStyle style) {
  constexpr std::size_t classWidth = 9;      // "very high"
  constexpr std::size_t intervalWidth = 13;  // "next in 120 s"
  const bool isBusy = sample.bandwidthClass != ConnectionBandwidthClass::idle;
  const std::string next = "next in " + secondsText(sample.intervalSeconds) + " s";
  return localDateText(sample.date) + "  " +
         heading(padded(std::string(classText(sample.bandwidthClass)), classWidth),
                 isBusy ? style : TextStyle::plain) +
         "  " + padded(next, intervalWidth) + "  " +
         trafficText(sample, earlier, isAdapter,
                     byteCountFormatter(ByteCountStyle::decimal, strings));
}

}  // namespace lanternfold
