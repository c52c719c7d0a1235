#include "CommandLine/SampleText.h"

#include <cstdint>
#include <sstream>

#include "CommandLine/DateText.h"
#include "CommandLine/PrintableText.h"
#include "CommandLine/TextTable.h"
#include "Support/ByteCountFormatter.h"

namespace lanternfold {
namespace {

ByteCountFormatter bytesIn(const StringTable& strings) {
  return {ByteCountStyle::decimal,
          [&strings](std::string_view key) { return strings.localized(key); }};
}

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

}  // namespace

void writeMetricsTable(const ConnectionMetricsMap& metrics, const StringTable& strings,
                       const Console& console) {
  constexpr auto right = ColumnAlignment::right;
  TextTable table({{.title = "Name"},
                   {.title = "Received", .alignment = right},
                   {.title = "Sent", .alignment = right},
                   {.title = "Packets in", .alignment = right},
                   {.title = "Packets out", .alignment = right},
                   {.title = "Errors in", .alignment = right},
                   {.title = "Errors out", .alignment = right},
                   {.title = "Collisions", .alignment = right},
                   {.title = "MTU", .alignment = right}});
  const ByteCountFormatter bytes = bytesIn(strings);
  for (std::size_t position = 0; position < metrics.size(); ++position) {
    const ConnectionMetrics& each = metrics.value(position);
    table.addRow({metrics.name(position), bytes.text(each.recvBytes), bytes.text(each.sentBytes),
                  std::to_string(each.recvPacket), std::to_string(each.sentPacket),
                  std::to_string(each.recvError), std::to_string(each.sentError),
                  std::to_string(each.collisions), std::to_string(each.mtu)});
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
         trafficText(sample, earlier, isAdapter, bytesIn(strings));
}

}  // namespace lanternfold
