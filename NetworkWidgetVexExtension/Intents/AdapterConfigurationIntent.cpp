#include "NetworkWidgetVexExtension/Intents/AdapterConfigurationIntent.h"

namespace lanternfold {

AdapterConfigurationIntent AdapterConfigurationIntent::from(
    const ConfigurationParameters& parameters) {
  AdapterConfigurationIntent intent{.adapter = std::nullopt,
                                    .showTimestamp = parameters.showTimestamp};
  if (parameters.adapter) {
    intent.adapter = NetworkAdapter{.identifier = parameters.adapter->identifier,
                                    .display = parameters.adapter->display};
  }
  return intent;
}

}  // namespace lanternfold
