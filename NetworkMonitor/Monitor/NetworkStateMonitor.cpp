#include "NetworkMonitor/Monitor/NetworkStateMonitor.h"

#include <expected>
#include <string_view>
#include <utility>
#include <vector>

#include "Support/FatalError.h"

namespace lanternfold {
namespace {

/// The names of the interfaces that count as adapters begin with this.
constexpr std::string_view adapterPrefix = "en";

/// A look-up without consent still names the interface: what it carries is shown like an answer.
std::optional<WlanInterface> interfaceOf(
    std::expected<std::optional<WlanInterface>, WlanInterfaceResolverError> answer) {
  if (answer) return *std::move(answer);
  return std::move(answer.error().wlan);
}

}  // namespace

NetworkStateMonitor::NetworkStateMonitor(
    std::shared_ptr<InternetInfoResolver> internetInfoResolver,
    std::shared_ptr<InterfaceResolver> interfaceResolver,
    std::shared_ptr<WlanInterfaceResolver> wlanInterfaceResolver,
    std::shared_ptr<CellularProviderResolver> cellularProvidersResolver,
    const Environment& environment)
    : internetInfoResolver_(std::move(internetInfoResolver)),
      interfaceResolver_(std::move(interfaceResolver)),
      wlanInterfaceResolver_(std::move(wlanInterfaceResolver)),
      cellularProvidersResolver_(std::move(cellularProvidersResolver)),
      environment_(environment),
      currentState_(NetworkState::initial(environment.strings)) {
  if (!internetInfoResolver_ || !interfaceResolver_ || !wlanInterfaceResolver_) {
    fatalError("a network state monitor was made without one of its required resolvers");
  }
}

void NetworkStateMonitor::start() {
  const auto self = shared_from_this();
  pathMonitor_ = environment_.pathMonitors.makePathMonitor(std::nullopt);
  pathMonitor_->setPathUpdateHandler([weak = weak_from_this()](const NetworkPath&) {
    if (const auto monitor = weak.lock()) monitor->refresh();
  });
  pathMonitor_->start(environment_.mainQueue);
  refresh();
}

void NetworkStateMonitor::stop() {
  // Taken out first: whatever the cancelling leads to finds no path monitor any more.
  const std::unique_ptr<PathMonitor> pathMonitor = std::move(pathMonitor_);
  if (pathMonitor) pathMonitor->cancel();
}

void NetworkStateMonitor::refresh() {
  const auto self = shared_from_this();
  setUpToDateCategories({});
  // Told once more, beside the report of the write: a monitor with no active category is complete
  // here and says nothing else.
  report();
  resolveCategories(activeCategories_);
}

void NetworkStateMonitor::resolve(NetworkSourceCategory categories) {
  const auto self = shared_from_this();
  setUpToDateCategories(upToDateCategories_.subtracting(categories));
  resolveCategories(categories);
}

void NetworkStateMonitor::setStateUpdateHandler(StateUpdateHandler handler) {
  stateUpdateHandler_ =
      handler ? std::make_shared<const StateUpdateHandler>(std::move(handler)) : nullptr;
}

void NetworkStateMonitor::setCurrentState(NetworkState state) {
  const auto self = shared_from_this();
  currentState_ = std::move(state);
  report();
}

bool NetworkStateMonitor::stateComplete() const { return activeCategories_ == upToDateCategories_; }

bool NetworkStateMonitor::isCellularAvailable() const {
  return cellularProvidersResolver_ && cellularProvidersResolver_->isCellularAvailable();
}

void NetworkStateMonitor::resolveCategories(NetworkSourceCategory categories) {
  // Wi-Fi before the others, which leave out the Wi-Fi interface; internet last, since only it
  // answers later.
  if (categories.contains(NetworkSourceCategory::wlan())) resolveWlan();
  if (categories.contains(NetworkSourceCategory::cellular())) resolveCellular();
  if (categories.contains(NetworkSourceCategory::other())) resolveOthers();
  if (categories.contains(NetworkSourceCategory::internet())) resolveInternet();
}

void NetworkStateMonitor::resolveWlan() {
  store(&NetworkState::wlan, interfaceOf(wlanInterfaceResolver_->wlanInterface()));
  markUpToDate(NetworkSourceCategory::wlan());
}

void NetworkStateMonitor::resolveCellular() {
  std::optional<CellularProvider> provider;
  if (cellularProvidersResolver_) provider = cellularProvidersResolver_->cellularProvider();
  const bool enabled = provider.has_value();
  const bool multipleSim = enabled && provider->carriers.size() > 1;

  store(&NetworkState::cellular, std::move(provider));
  store(&NetworkState::cellularEnabled, enabled);
  store(&NetworkState::multipleSim, multipleSim);
  markUpToDate(NetworkSourceCategory::cellular());
}

void NetworkStateMonitor::resolveOthers() {
  std::vector<BasicInterface> interfaces = interfaceResolver_->interfacesPrefixed(adapterPrefix);
  if (currentState_.wlan) {
    const std::string& wlanName = currentState_.wlan->interface.name;
    std::erase_if(interfaces, [&wlanName](const BasicInterface& interface) {
      return interface.name == wlanName;
    });
  }
  store(&NetworkState::others, std::move(interfaces));
  markUpToDate(NetworkSourceCategory::other());
}

void NetworkStateMonitor::resolveInternet() {
  internetInfoResolver_->resolve(
      [self = shared_from_this()](const InternetInfo& info, bool complete, std::error_code error) {
        // The resolver may drop this handler while it runs: the copy keeps the monitor until the
        // end.
        const auto monitor = self;
        monitor->receive(info, complete, error);
      });
}

void NetworkStateMonitor::receive(const InternetInfo& info, bool complete, std::error_code error) {
  store(&NetworkState::internet, info);
  if (error) report(error);
  if (complete) markUpToDate(NetworkSourceCategory::internet());
}

template <typename Field, typename Value>
void NetworkStateMonitor::store(Field NetworkState::* field, Value&& value) {
  currentState_.*field = std::forward<Value>(value);
  report();
}

void NetworkStateMonitor::setUpToDateCategories(NetworkSourceCategory categories) {
  upToDateCategories_ = categories;
  report();
}

void NetworkStateMonitor::markUpToDate(NetworkSourceCategory category) {
  setUpToDateCategories(upToDateCategories_.unionWith(category));
}

void NetworkStateMonitor::report(std::error_code error) {
  // Both are copies because the handler may replace itself or begin another refresh.
  const auto handler = stateUpdateHandler_;
  if (!handler) return;
  const NetworkState state = currentState_;
  (*handler)(state, stateComplete(), error);
}

}  // namespace lanternfold
