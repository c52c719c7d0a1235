// Serves the adapter widget's configuration from this machine's adapters.
//
// Made by: the host. Read by: its dialogs, which let the user choose an adapter.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "NetworkMonitor/Monitor/Resolvers.h"
#include "NetworkWidgetVexExtension/Intents/AdapterConfigurationIntentHandling.h"
#include "NetworkWidgetVexExtension/Providers/BestRouteFinder.h"
#include "Platform/StringTable.h"

namespace lanternfold {

/// Looks at the machine anew for every question that needs it. Answers that were asked for come
/// also when the handler is gone.
class AdapterIntentHandler final : public AdapterConfigurationIntentHandling {
 public:
  /// Neither is null; `strings` outlives the handler and what it was asked.
  AdapterIntentHandler(std::shared_ptr<InterfaceResolver> interfaces,
                       std::shared_ptr<BestRouteFinder> bestRoutes, const StringTable& strings);

  /// An adapter that is there, or the automatic choice, is a success. One that is known only by
  /// what a list showed is a success when one option is shown so. An adapter that is not there is
  /// to be confirmed: it may come back. Without any, the user is to choose among all.
  void resolveAdapter(const AdapterConfigurationIntent& intent,
                      ResolutionCompletion completion) override;
  /// The automatic choice first, whose display says which adapter that is now, then every adapter;
  /// displays tell them apart.
  void provideAdapterOptions(const AdapterConfigurationIntent& intent,
                             OptionsCompletion completion) override;
  /// The automatic choice.
  void defaultAdapter(const AdapterConfigurationIntent& intent,
                      DefaultCompletion completion) override;
  /// Always ready, and a success: the widget itself shows what any choice has come to.
  void confirm(const AdapterConfigurationIntent& intent, ResponseCompletion completion) override;
  void handle(const AdapterConfigurationIntent& intent, ResponseCompletion completion) override;

 private:
  void withOptions(std::function<void(std::vector<NetworkAdapter>)> receive) const;

  std::shared_ptr<InterfaceResolver> interfaces_;
  std::shared_ptr<BestRouteFinder> bestRoutes_;
  const StringTable& strings_;
};

}  // namespace lanternfold
