// Who helps the user to configure the adapter widget.
//
// Implemented by: whoever serves the intent, outside the extension (WidgetHost/
// AdapterIntentHandler.h). Called by: the host's configuration of a widget.
#pragma once

#include <expected>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "NetworkWidgetVexExtension/Intents/AdapterConfigurationIntent.h"
#include "NetworkWidgetVexExtension/Intents/AdapterConfigurationIntentResponse.h"
#include "NetworkWidgetVexExtension/Intents/NetworkAdapterResolutionResult.h"

namespace lanternfold {

/// Why there are no options.
struct IntentHandlingError {
  std::string sentence;
  friend bool operator==(const IntentHandlingError&, const IntentHandlingError&) = default;
};

/// Main queue. Every operation completes exactly once, there.
class AdapterConfigurationIntentHandling {
 public:
  using AdapterOptions = std::expected<std::vector<NetworkAdapter>, IntentHandlingError>;
  using ResolutionCompletion = std::function<void(NetworkAdapterResolutionResult)>;
  using OptionsCompletion = std::function<void(AdapterOptions)>;
  using DefaultCompletion = std::function<void(std::optional<NetworkAdapter>)>;
  using ResponseCompletion = std::function<void(AdapterConfigurationIntentResponse)>;

  virtual ~AdapterConfigurationIntentHandling() = default;

  virtual void resolveAdapter(const AdapterConfigurationIntent& intent,
                              ResolutionCompletion completion) = 0;
  /// What the user may choose from, in the order of the list.
  virtual void provideAdapterOptions(const AdapterConfigurationIntent& intent,
                                     OptionsCompletion completion) = 0;
  /// What stands in a new configuration; none for nothing.
  virtual void defaultAdapter(const AdapterConfigurationIntent& intent,
                              DefaultCompletion completion) = 0;
  /// Whether the intent could be handled as it is.
  virtual void confirm(const AdapterConfigurationIntent& intent, ResponseCompletion completion) = 0;
  virtual void handle(const AdapterConfigurationIntent& intent, ResponseCompletion completion) = 0;
};

}  // namespace lanternfold
