// The user's consent to show where the machine is: reads it, asks for it, tells of its changes.
//
// Made by: who asks the user, such as a timeline provider. The static side is read by whoever only
// wants to know, such as a Wi-Fi resolver.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "Platform/LocationManager.h"

namespace lanternfold {

/// Queue: the main one, for everything that is not static. The callback may do anything: replace
/// itself, ask again, let go of the observer.
class LocationAuthorizationObserver {
 public:
  enum class AuthorizationStatus : std::int32_t {
    notDetermined = 0,
    restricted = 1,
    denied = 2,
    authorizedAlways = 3,
    authorizedWhenInUse = 4,
    unknown = -1,  ///< any other value of the system
  };

  using AuthStatusChangeHandler = std::function<void(AuthorizationStatus)>;

  /// The status of this raw value; none outside -1..4.
  [[nodiscard]] static std::optional<AuthorizationStatus> fromRawValue(std::int32_t rawValue);

  /// The system's status at this moment; any thread. Makes no manager and asks nobody.
  [[nodiscard]] static AuthorizationStatus currentAuthStatus(const LocationConsent& consent);

  /// `consent` outlives the observer. Nothing is asked or observed before the first request.
  explicit LocationAuthorizationObserver(LocationConsent& consent) : consent_(consent) {}
  LocationAuthorizationObserver(const LocationAuthorizationObserver&) = delete;
  LocationAuthorizationObserver& operator=(const LocationAuthorizationObserver&) = delete;

  [[nodiscard]] AuthorizationStatus currentAuthStatus() const {
    return currentAuthStatus(consent_);
  }

  /// Called once, with the current status, for every change after the first request. Empty at first
  /// and for nobody.
  AuthStatusChangeHandler onAuthStatusChange;

  /// The former when `whenInUse` is true, else the latter.
  void requestAuthorization(bool whenInUse);
  void requestWhenInUseAuthorization();
  void requestAlwaysAuthorization();

 private:
  [[nodiscard]] LocationManager& locationManager();
  void locationManagerDidChangeAuthorization();

  LocationConsent& consent_;
  std::unique_ptr<LocationManager> locationManager_;  ///< null before the first request
};

}  // namespace lanternfold
