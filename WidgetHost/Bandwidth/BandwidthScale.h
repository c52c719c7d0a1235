// The vertical measures of the bandwidth monitor's graph: received bytes grow upwards from a line,
// sent ones downwards, both to one scale. Pure.
#pragma once

#include "WidgetHost/Bandwidth/TrafficRate.h"

namespace lanternfold {

struct BandwidthScale {
  /// Bytes per second at the graph's upper and lower edge. The larger of them is 1, 2 or 5 times a
  /// power of ten; the other one is the same, or a third of it.
  double receivedMaximum = 0;
  double sentMaximum = 0;

  /// The share of the graph's height above the line, 0 to 1.
  [[nodiscard]] double receivedShare() const {
    return receivedMaximum / (receivedMaximum + sentMaximum);
  }
  /// The larger of the two: what the graph is labelled with.
  [[nodiscard]] double labelledMaximum() const {
    return receivedMaximum < sentMaximum ? sentMaximum : receivedMaximum;
  }

  friend bool operator==(const BandwidthScale&, const BandwidthScale&) = default;
};

/// The smallest of 10 000, 20 000, 50 000, 100 000, ... bytes per second that `rate` does not
/// exceed: below that a graph would make mountains of what goes through a resting adapter.
[[nodiscard]] double roundMaximum(double rate);

/// The scale in which all of `minute` fits.
[[nodiscard]] BandwidthScale bandwidthScale(const TrafficMinute& minute);

}  // namespace lanternfold
