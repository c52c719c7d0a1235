#include "Wiring/RelayedConsent.h"

#include <algorithm>
#include <utility>

#include "NetworkMonitor/Location/LocationAuthorizationObserver.h"
#include "Support/FatalError.h"

namespace lanternfold {
namespace {

using Status = LocationAuthorizationObserver::AuthorizationStatus;

void call(const LocationConsent::ChangeHandler& handler) {
  if (handler) handler();
}

bool isUndecided(std::int32_t status) {
  return status == static_cast<std::int32_t>(Status::notDetermined);
}

bool refuses(std::int32_t status) {
  return status == static_cast<std::int32_t>(Status::restricted) ||
         status == static_cast<std::int32_t>(Status::denied);
}

bool allows(std::int32_t status) {
  return status == static_cast<std::int32_t>(Status::authorizedAlways) ||
         status == static_cast<std::int32_t>(Status::authorizedWhenInUse);
}

}  // namespace

class RelayedConsent::Manager final : public LocationManager {
 public:
  Manager(RelayedConsent& relay, ChangeHandler didChangeAuthorization)
      : relay_(relay),
        handler_(std::make_shared<ChangeHandler>(std::move(didChangeAuthorization))),
        manager_(relay.consent_.makeLocationManager([living = std::weak_ptr(handler_)] {
          if (const auto handler = living.lock()) call(*handler);
        })) {
    relay_.managers_.push_back(this);
  }
  ~Manager() override { std::erase(relay_.managers_, this); }
  Manager(const Manager&) = delete;
  Manager& operator=(const Manager&) = delete;

  void requestWhenInUseAuthorization() override { ask(/*whenInUse=*/true); }
  void requestAlwaysAuthorization() override { ask(/*whenInUse=*/false); }

  [[nodiscard]] const std::shared_ptr<ChangeHandler>& handler() const { return handler_; }

 private:
  void ask(bool whenInUse) const {
    if (relay_.ask_) relay_.ask_(whenInUse);
  }

  RelayedConsent& relay_;
  const std::shared_ptr<ChangeHandler> handler_;  ///< held elsewhere only while it is called
  const std::unique_ptr<LocationManager> manager_;
};

RelayedConsent::~RelayedConsent() {
  if (!managers_.empty()) fatalError("a location manager outlived the consent that it relays");
}

void RelayedConsent::tell(std::int32_t status) {
  {
    const std::scoped_lock guard(mutex_);
    if (std::exchange(told_, status) == status) return;
  }
  // A handler may let go of its own manager and of others, which hear nothing any more then.
  std::vector<std::weak_ptr<ChangeHandler>> handlers;
  for (const Manager* manager : managers_) handlers.push_back(manager->handler());
  for (const auto& living : handlers) {
    if (const auto handler = living.lock()) call(*handler);
  }
}

std::int32_t RelayedConsent::authorizationStatus() const {
  const std::int32_t known = consent_.authorizationStatus();
  const std::scoped_lock guard(mutex_);
  if (!told_) return known;
  const bool isWithheld = allows(known) && !allows(*told_);
  const bool isSettled = isUndecided(known) && refuses(*told_);
  return isWithheld || isSettled ? *told_ : known;
}

std::unique_ptr<LocationManager> RelayedConsent::makeLocationManager(
    ChangeHandler didChangeAuthorization) {
  return std::make_unique<Manager>(*this, std::move(didChangeAuthorization));
}

}  // namespace lanternfold
