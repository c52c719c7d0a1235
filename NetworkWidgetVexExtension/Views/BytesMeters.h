// The round meters of received and sent bytes, alone and in a row or column.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "NetworkMonitor/Metrics/ConnectionMetrics.h"
#include "NetworkWidgetVexExtension/Views/WidgetEnvironment.h"
#include "ViewTree/View.h"

namespace lanternfold {

/// What a meter shows.
struct BytesMeterFigure {
  std::uint64_t byteCount = 0;
  std::string label;           ///< short: an arrow
  std::string accessibleName;  ///< what the arrow means, localised

  friend bool operator==(const BytesMeterFigure&, const BytesMeterFigure&) = default;
};

struct BytesCircularMeter {
  using Size = BytesCircularMeterSize;

  BytesMeterFigure metrics;
  Size size = Size::automatic;

  [[nodiscard]] View body(const WidgetEnvironment& environment) const;
};

struct HBytesMeters {
  std::vector<BytesMeterFigure> metrics;
  BytesCircularMeter::Size size = BytesCircularMeter::Size::automatic;

  [[nodiscard]] View body(const WidgetEnvironment& environment) const;
};

struct VBytesMeters {
  std::vector<BytesMeterFigure> metrics;
  BytesCircularMeter::Size size = BytesCircularMeter::Size::automatic;

  [[nodiscard]] View body(const WidgetEnvironment& environment) const;
};

/// The side of a meter's frame, in points.
[[nodiscard]] double bytesMeterSide(BytesCircularMeter::Size size);

/// Received, then sent bytes.
[[nodiscard]] std::vector<BytesMeterFigure> bytesMeterFigures(const ConnectionMetrics& metrics,
                                                              const StringTable& strings);

}  // namespace lanternfold
