// What a widget service says beside a configuration when it asks for entries.
#pragma once

namespace lanternfold {

struct TimelineProviderContext {
  bool isPreview = false;  ///< for the gallery of widgets
  friend bool operator==(const TimelineProviderContext&, const TimelineProviderContext&) = default;
};

}  // namespace lanternfold
