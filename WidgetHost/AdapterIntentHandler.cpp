#include "WidgetHost/AdapterIntentHandler.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

#include "Support/FatalError.h"
#include "WidgetHost/AdapterOptions.h"

namespace lanternfold {
namespace {

/// The names of the interfaces that count as adapters begin with this.
constexpr std::string_view adapterPrefix = "en";

using Options = std::vector<NetworkAdapter>;
using Result = NetworkAdapterResolutionResult;

/// Of a choice that names its interface.
Result resolvedByIdentifier(const NetworkAdapter& chosen, const Options& options) {
  const auto option = std::ranges::find(options, chosen.identifier, &NetworkAdapter::identifier);
  return option == options.end() ? Result::confirmationRequired(chosen) : Result::success(*option);
}

/// Of a choice that only says what a list showed.
Result resolvedByDisplay(const NetworkAdapter& chosen, const Options& options) {
  Options shownSo;
  std::ranges::copy_if(options, std::back_inserter(shownSo), [&](const NetworkAdapter& option) {
    return option.display == chosen.display;
  });
  return shownSo.size() == 1 ? Result::success(std::move(shownSo.front()))
                             : Result::disambiguation(options);
}

Result resolved(const std::optional<NetworkAdapter>& chosen, const Options& options) {
  if (!chosen) return Result::disambiguation(options);
  return chosen->identifier ? resolvedByIdentifier(*chosen, options)
                            : resolvedByDisplay(*chosen, options);
}

}  // namespace

AdapterIntentHandler::AdapterIntentHandler(std::shared_ptr<InterfaceResolver> interfaces,
                                           std::shared_ptr<BestRouteFinder> bestRoutes,
                                           const StringTable& strings)
    : interfaces_(std::move(interfaces)), bestRoutes_(std::move(bestRoutes)), strings_(strings) {
  if (!interfaces_ || !bestRoutes_) {
    fatalError("an intent handler was made without what it asks about adapters");
  }
}

void AdapterIntentHandler::resolveAdapter(const AdapterConfigurationIntent& intent,
                                          ResolutionCompletion completion) {
  withOptions([chosen = intent.adapter, completion = std::move(completion)](
                  const Options& options) { completion(resolved(chosen, options)); });
}

void AdapterIntentHandler::provideAdapterOptions(const AdapterConfigurationIntent&,
                                                 OptionsCompletion completion) {
  withOptions(
      [completion = std::move(completion)](Options options) { completion(std::move(options)); });
}

void AdapterIntentHandler::defaultAdapter(const AdapterConfigurationIntent&,
                                          DefaultCompletion completion) {
  withOptions([completion = std::move(completion)](const Options& options) {
    completion(options.front());
  });
}

void AdapterIntentHandler::confirm(const AdapterConfigurationIntent&,
                                   ResponseCompletion completion) {
  completion({.code = AdapterConfigurationIntentResponseCode::ready});
}

void AdapterIntentHandler::handle(const AdapterConfigurationIntent&,
                                  ResponseCompletion completion) {
  completion({.code = AdapterConfigurationIntentResponseCode::success});
}

void AdapterIntentHandler::withOptions(std::function<void(Options)> receive) const {
  bestRoutes_->find([interfaces = interfaces_, &strings = strings_,
                     receive = std::move(receive)](const std::optional<std::string>& bestRoute) {
    receive(adapterOptions(interfaces->interfacesPrefixed(adapterPrefix), bestRoute, strings));
  });
}

}  // namespace lanternfold
