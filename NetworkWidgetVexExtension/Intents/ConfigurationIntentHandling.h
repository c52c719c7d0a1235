// Who helps the user to configure a widget that shows the network's state.
//
// Implemented by: whoever serves the intent, outside the extension. Called by: the host's
// configuration of a widget.
#pragma once

#include <functional>

#include "NetworkWidgetVexExtension/Intents/BooleanResolutionResult.h"
#include "NetworkWidgetVexExtension/Intents/ConfigurationIntent.h"
#include "NetworkWidgetVexExtension/Intents/ConfigurationIntentResponse.h"

namespace lanternfold {

/// Main queue. Every operation completes exactly once, there.
class ConfigurationIntentHandling {
 public:
  using ResolutionCompletion = std::function<void(BooleanResolutionResult)>;
  using ResponseCompletion = std::function<void(ConfigurationIntentResponse)>;

  virtual ~ConfigurationIntentHandling() = default;

  virtual void resolveShowTimestamp(const ConfigurationIntent& intent,
                                    ResolutionCompletion completion) = 0;
  /// Whether the intent could be handled as it is.
  virtual void confirm(const ConfigurationIntent& intent, ResponseCompletion completion) = 0;
  virtual void handle(const ConfigurationIntent& intent, ResponseCompletion completion) = 0;
};

}  // namespace lanternfold
