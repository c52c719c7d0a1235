#include "WidgetHost/Bandwidth/BandwidthTexts.h"

#include <array>
#include <charconv>
#include <string_view>

#include "Platform/ByteCounts.h"
#include "Support/FatalError.h"
#include "Support/Localizable.h"
#include "Support/TextPlaceholders.h"

namespace lanternfold {
namespace {

constexpr double bitsPerByte = 8;
/// Less than this of the smallest unit would be shown as nothing.
constexpr double smallestShown = 0.005;

using Units = std::array<std::string_view, 4>;
constexpr Units byteUnits = {localizable("KB/s"), localizable("MB/s"), localizable("GB/s"),
                             localizable("TB/s")};
constexpr Units bitUnits = {localizable("kbit/s"), localizable("Mbit/s"), localizable("Gbit/s"),
                            localizable("Tbit/s")};

std::string fixedText(double value, int fractionDigits) {
  // Enough for the largest number of seventeen digits and more that a rate may be.
  std::array<char, 64> digits{};
  const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                    std::chars_format::fixed, fractionDigits);
  if (result.ec != std::errc()) fatalError("a rate has more digits than any rate");
  return {digits.data(), result.ptr};
}

/// With as many digits behind the point as make three of them, and none that 1000 would need.
int fractionDigits(double value) {
  if (value < 9.995) return 2;
  return value < 99.95 ? 1 : 0;
}

RateFigure figure(double perSecond, const Units& units, const StringTable& strings) {
  constexpr double step = 1000;
  constexpr double roundsToStep = 999.5;
  double value = perSecond / step;
  std::size_t unit = 0;
  while (value >= roundsToStep && unit + 1 < units.size()) {
    value /= step;
    ++unit;
  }
  const std::string digits =
      value < smallestShown ? std::string("0") : fixedText(value, fractionDigits(value));
  return {.number = strings.localizedDecimal(digits), .unit = strings.localized(units[unit])};
}

std::string classText(ConnectionBandwidthClass bandwidthClass, const StringTable& strings) {
  switch (bandwidthClass) {
    case ConnectionBandwidthClass::idle:
      return strings.localized("Idle");
    case ConnectionBandwidthClass::low:
      return strings.localized("Low traffic");
    case ConnectionBandwidthClass::high:
      return strings.localized("High traffic");
    case ConnectionBandwidthClass::veryHigh:
      return strings.localized("Very high traffic");
  }
  fatalError("a bandwidth class is none of the known ones");
}

}  // namespace

RateFigure byteRateFigure(double bytesPerSecond, const StringTable& strings) {
  return figure(bytesPerSecond, byteUnits, strings);
}

RateFigure bitRateFigure(double bytesPerSecond, const StringTable& strings) {
  return figure(bytesPerSecond * bitsPerByte, bitUnits, strings);
}

std::string widestRateNumber(const StringTable& strings) {
  return strings.localizedDecimal("88.8");
}

std::string roundRateText(double bytesPerSecond, const StringTable& strings) {
  constexpr double step = 1000;
  double value = bytesPerSecond / step;
  std::size_t unit = 0;
  while (value >= step && unit + 1 < byteUnits.size()) {
    value /= step;
    ++unit;
  }
  return strings.localizedDecimal(fixedText(value, 0)) + ' ' + strings.localized(byteUnits[unit]);
}

std::string totalText(std::uint64_t bytes, const StringTable& strings) {
  const ByteCountFormatter formatter = byteCountFormatter(ByteCountStyle::decimal, strings);
  // The formatter's word for none reads badly beside numbers.
  const std::string number = bytes == 0 ? strings.localizedDecimal("0") : formatter.number(bytes);
  return number + ' ' + formatter.unit(bytes);
}

std::string statusText(const BandwidthMonitorState& state, const StringTable& strings) {
  switch (state.availability) {
    case BandwidthAvailability::unknown:
      return {};
    case BandwidthAvailability::noAdapter:
      return strings.localized("No network adapter");
    case BandwidthAvailability::gone:
      return strings.localized("Not available");
    case BandwidthAvailability::present: {
      const auto& bandwidthClass = state.traffic.bandwidthClass;
      return bandwidthClass ? classText(*bandwidthClass, strings) : std::string();
    }
  }
  fatalError("a bandwidth monitor is in no known state");
}

std::string bandwidthSummary(const BandwidthMonitorState& state, const StringTable& strings) {
  std::string summary;
  const auto add = [&](std::string_view line) {
    if (!summary.empty() && !line.empty()) summary += '\n';
    summary += line;
  };
  add(state.adapterName);
  add(statusText(state, strings));
  if (state.availability == BandwidthAvailability::gone) {
    add(strings.localized("It is gone, or cannot be read now."));
  }
  if (const auto& now = state.traffic.now()) {
    add(fillPlaceholders(strings.localized("Receiving %@, sending %@"),
                         {byteRateFigure(now->received, strings).text(),
                          byteRateFigure(now->sent, strings).text()}));
  }
  if (const auto& totals = state.traffic.totals) {
    add(fillPlaceholders(
        strings.localized("Received %@ and sent %@ in total"),
        {totalText(totals->recvBytes, strings), totalText(totals->sentBytes, strings)}));
  }
  return summary;
}

}  // namespace lanternfold
