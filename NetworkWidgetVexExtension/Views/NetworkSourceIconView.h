// The symbol of a kind of source.
#pragma once

#include <cstdint>
#include <string>

#include "NetworkMonitor/Model/NetworkSourceCategory.h"
#include "NetworkWidgetVexExtension/Views/WidgetEnvironment.h"
#include "ViewTree/View.h"

namespace lanternfold {

struct NetworkSourceIconView {
  NetworkSourceCategory sourceCategory;

  /// The Wi-Fi symbol shows how well the network is received, where that is known.
  [[nodiscard]] View body(const WidgetEnvironment& environment) const;
};

/// The share of a symbol's bars that `signalDbm` lights, 0 to 1: all of them at -50 dBm and above,
/// none at -100.
[[nodiscard]] double strengthOf(std::int64_t signalDbm);

/// The name of the symbol of `category`.
[[nodiscard]] std::string symbolNameOf(NetworkSourceCategory category);

}  // namespace lanternfold
