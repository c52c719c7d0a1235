// The seam to the user's consent to show where the machine is, of which a network's name tells.
//
// Linux side: `LinuxLocationConsent` (the user's own record) and, inside a sandbox,
// `PortalLocationConsent` (the location portal). Fake: `FakeLocationConsent`. All pass the same
// contract tests.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

namespace lanternfold {

/// Asks for consent, and hears of changes while it exists.
class LocationManager {
 public:
  virtual ~LocationManager() = default;

  /// Both ask the user if nothing has been decided yet, and do nothing otherwise. They return at
  /// once; what the user decides is a change of the authorization.
  virtual void requestWhenInUseAuthorization() = 0;
  virtual void requestAlwaysAuthorization() = 0;
};

/// What the system knows of the consent. Any thread.
class LocationConsent {
 public:
  /// Called on the main queue after every change of the authorization, by this process or another
  /// one of the user.
  using ChangeHandler = std::function<void()>;

  virtual ~LocationConsent() = default;

  /// 0 not determined, 1 restricted, 2 denied, 3 authorized always, 4 authorized when in use; other
  /// values may come. Makes no manager and asks nobody.
  [[nodiscard]] virtual std::int32_t authorizationStatus() const = 0;

  /// Never null. No call of the handler comes after the manager has been destroyed on the main
  /// queue.
  [[nodiscard]] virtual std::unique_ptr<LocationManager> makeLocationManager(
      ChangeHandler didChangeAuthorization) = 0;
};

}  // namespace lanternfold
