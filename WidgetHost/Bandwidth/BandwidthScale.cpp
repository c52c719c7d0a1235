#include "WidgetHost/Bandwidth/BandwidthScale.h"

#include <algorithm>

namespace lanternfold {
namespace {

constexpr double smallestMaximum = 10'000;
/// How much larger one direction's part of the graph is than that of a direction that needs little.
constexpr double largerPart = 3;

}  // namespace

double roundMaximum(double rate) {
  double decade = smallestMaximum;
  while (decade * 10 < rate) decade *= 10;
  for (const double step : {1.0, 2.0, 5.0}) {
    if (rate <= step * decade) return step * decade;
  }
  return 10 * decade;
}

BandwidthScale bandwidthScale(const TrafficMinute& minute) {
  double received = 0;
  double sent = 0;
  for (const auto& rate : minute) {
    if (!rate) continue;
    received = std::max(received, rate->received);
    sent = std::max(sent, rate->sent);
  }
  const double maximum = roundMaximum(std::max(received, sent));
  const double less = maximum / largerPart;
  if (sent <= less) return {.receivedMaximum = maximum, .sentMaximum = less};
  if (received <= less) return {.receivedMaximum = less, .sentMaximum = maximum};
  return {.receivedMaximum = maximum, .sentMaximum = maximum};
}

}  // namespace lanternfold
