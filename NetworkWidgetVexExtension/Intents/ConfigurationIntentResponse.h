// What whoever serves `ConfigurationIntent` answers when asked to confirm or handle it.
#pragma once

#include <optional>

#include "NetworkWidgetVexExtension/Intents/IntentResponseCode.h"
#include "NetworkWidgetVexExtension/Intents/UserActivity.h"

namespace lanternfold {

using ConfigurationIntentResponseCode = IntentResponseCode;

struct ConfigurationIntentResponse {
  ConfigurationIntentResponseCode code = ConfigurationIntentResponseCode::unspecified;
  std::optional<UserActivity> userActivity = std::nullopt;

  friend bool operator==(const ConfigurationIntentResponse&,
                         const ConfigurationIntentResponse&) = default;
};

}  // namespace lanternfold
