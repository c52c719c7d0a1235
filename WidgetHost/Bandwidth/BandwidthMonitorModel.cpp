#include "WidgetHost/Bandwidth/BandwidthMonitorModel.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "NetworkWidgetVexExtension/Views/AdapterChoice.h"
#include "WidgetHost/AdapterOptions.h"

namespace lanternfold {
namespace {

/// The names of the interfaces that count as adapters begin with this.
constexpr std::string_view adapterPrefix = "en";

}  // namespace

BandwidthMonitorModel::BandwidthMonitorModel(const Surroundings& surroundings)
    : surroundings_(surroundings),
      history_(analyzer_, surroundings.counters.is32bitCapped()),
      self_(std::make_shared<BandwidthMonitorModel*>(this)) {}

BandwidthMonitorModel::~BandwidthMonitorModel() = default;

void BandwidthMonitorModel::setObserver(std::function<void()> changed) {
  changed_ = std::move(changed);
}

void BandwidthMonitorModel::setShown(bool isShown) {
  isShown_ = isShown;
  follow();
}

void BandwidthMonitorModel::setLocked(bool isLocked) {
  isLocked_ = isLocked;
  follow();
}

void BandwidthMonitorModel::follow() {
  const bool isFollowing = isShown_ && !isLocked_;
  if (isFollowing == timer_.has_value()) return;
  if (!isFollowing) {
    timer_.reset();
    history_.interrupt();
    return;
  }
  mustAskForAdapters_ = true;
  timer_.emplace(surroundings_.mainQueue, surroundings_.clock, std::chrono::seconds(1),
                 [this] { tick(); });
}

void BandwidthMonitorModel::resumed() { history_.interrupt(); }

void BandwidthMonitorModel::networkPathChanged() { mustAskForAdapters_ = true; }

void BandwidthMonitorModel::choose(std::string_view identifier) {
  const auto option = std::ranges::find(state_.adapters, std::optional(std::string(identifier)),
                                        &NetworkAdapter::identifier);
  if (option == state_.adapters.end()) return;
  chosen_.reset();
  if (identifier != automaticAdapterIdentifier) chosen_ = *option;
  update();
}

void BandwidthMonitorModel::tick() {
  readCounters();
  if (mustAskForAdapters_) askForAdapters();
  update();
}

void BandwidthMonitorModel::readCounters() {
  const auto reading = surroundings_.counters.read();
  const auto time = surroundings_.clock.steadyNow();
  if (!reading) {
    history_.addFailure(time);
    return;
  }
  const auto& names = reading->names();
  const bool isAnotherSet = namesRead_ == nullptr || (namesRead_ != names && *namesRead_ != *names);
  mustAskForAdapters_ = mustAskForAdapters_ || isAnotherSet;
  namesRead_ = names;
  history_.add(time, *reading);
}

void BandwidthMonitorModel::askForAdapters() {
  if (isAskingForAdapters_) return;
  isAskingForAdapters_ = true;
  mustAskForAdapters_ = false;
  surroundings_.bestRoutes.find(
      [weak = std::weak_ptr(self_)](const std::optional<std::string>& bestRoute) {
        if (const auto self = weak.lock()) (*self)->takeAdapters(bestRoute);
      });
}

void BandwidthMonitorModel::takeAdapters(const std::optional<std::string>& bestRoute) {
  isAskingForAdapters_ = false;
  if (!timer_) return;
  interfaces_ = surroundings_.interfaces.interfacesPrefixed(adapterPrefix);
  bestRoute_ = bestRoute;
  std::vector<std::string> names;
  for (const BasicInterface& interface : *interfaces_) names.push_back(interface.name);
  if (chosen_ && measuredInterface() == nullptr) names.push_back(*chosen_->identifier);
  history_.watch(names);
  update();
}

void BandwidthMonitorModel::update() {
  BandwidthMonitorState state{.adapters = offeredAdapters(),
                              .traffic = history_.trafficOf(nameOfMeasured())};
  if (chosen_) {
    state.chosenIdentifier = *chosen_->identifier;
    state.adapterName = chosen_->display;
  }
  if (const BasicInterface* const measured = measuredInterface()) {
    state.adapterName = adapterOption(*measured).display;
  }
  state.availability = availability(state.traffic);
  if (state == state_) return;
  state_ = std::move(state);
  // A copy: what is called may set another one.
  if (const auto changed = changed_; changed && timer_) changed();
}

std::vector<NetworkAdapter> BandwidthMonitorModel::offeredAdapters() const {
  if (!interfaces_) return {};
  std::vector<NetworkAdapter> options =
      adapterOptions(*interfaces_, bestRoute_, surroundings_.strings);
  if (chosen_ && measuredInterface() == nullptr) options.push_back(*chosen_);
  return options;
}

const BasicInterface* BandwidthMonitorModel::measuredInterface() const {
  if (!interfaces_) return nullptr;
  if (!chosen_) {
    return bestAdapter(*interfaces_,
                       bestRoute_ ? std::vector{*bestRoute_} : std::vector<std::string>());
  }
  const auto found = std::ranges::find(*interfaces_, *chosen_->identifier, &BasicInterface::name);
  return found == interfaces_->end() ? nullptr : &*found;
}

std::string BandwidthMonitorModel::nameOfMeasured() const {
  if (chosen_) return *chosen_->identifier;
  const BasicInterface* const measured = measuredInterface();
  return measured == nullptr ? std::string() : measured->name;
}

BandwidthAvailability BandwidthMonitorModel::availability(const AdapterTraffic& traffic) const {
  if (!interfaces_) return BandwidthAvailability::unknown;
  if (nameOfMeasured().empty()) return BandwidthAvailability::noAdapter;
  return traffic.totals ? BandwidthAvailability::present : BandwidthAvailability::gone;
}

}  // namespace lanternfold
