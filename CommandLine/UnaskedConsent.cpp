#include "CommandLine/UnaskedConsent.h"

#include <utility>

namespace lanternfold {
namespace {

class HearingManager final : public LocationManager {
 public:
  explicit HearingManager(std::unique_ptr<LocationManager> manager)
      : manager_(std::move(manager)) {}

  void requestWhenInUseAuthorization() override {}
  void requestAlwaysAuthorization() override {}

 private:
  const std::unique_ptr<LocationManager> manager_;
};

}  // namespace

std::int32_t UnaskedConsent::authorizationStatus() const { return consent_.authorizationStatus(); }

std::unique_ptr<LocationManager> UnaskedConsent::makeLocationManager(
    ChangeHandler didChangeAuthorization) {
  return std::make_unique<HearingManager>(
      consent_.makeLocationManager(std::move(didChangeAuthorization)));
}

}  // namespace lanternfold
