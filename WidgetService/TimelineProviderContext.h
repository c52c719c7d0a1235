// What a widget service says beside a configuration when it asks for entries.
#pragma once

namespace lanternfold {

struct TimelineProviderContext {
  bool isPreview = false;  ///< for the gallery of widgets
};

}  // namespace lanternfold
