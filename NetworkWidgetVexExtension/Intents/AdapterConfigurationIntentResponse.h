// What whoever serves `AdapterConfigurationIntent` answers when asked to confirm or handle it.
#pragma once

#include <optional>

#include "NetworkWidgetVexExtension/Intents/IntentResponseCode.h"
#include "NetworkWidgetVexExtension/Intents/UserActivity.h"

namespace lanternfold {

using AdapterConfigurationIntentResponseCode = IntentResponseCode;

struct AdapterConfigurationIntentResponse {
  AdapterConfigurationIntentResponseCode code = AdapterConfigurationIntentResponseCode::unspecified;
  std::optional<UserActivity> userActivity = std::nullopt;

  friend bool operator==(const AdapterConfigurationIntentResponse&,
                         const AdapterConfigurationIntentResponse&) = default;
};

}  // namespace lanternfold
