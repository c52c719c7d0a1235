// The user's consent to show Wi-Fi names, as the host handles it: asks once when a widget needs it
// on a machine that has Wi-Fi, records what is decided, and tells the widgets.
//
// Made by: `HostDesktop`, once. Main thread.
#pragma once

#include <cstdint>
#include <expected>
#include <functional>
#include <memory>
#include <string>

#include "Platform/LocationManager.h"
#include "PlatformLinux/Location/ConsentAuthority.h"
#include "PlatformLinux/Location/ConsentRecord.h"
#include "WidgetHost/Service/WidgetExtension.h"

namespace lanternfold {

class WifiNames {
 public:
  struct Surroundings {
    LocationConsent& consent;
    ConsentRecord& record;
    /// Whom to ask inside a sandbox; null outside of one.
    ConsentAuthority* authority = nullptr;
    WidgetExtension& extension;
    /// Whether the machine has Wi-Fi now; asked whenever it matters.
    std::function<bool()> hasWifi;
    /// Shows the dialog, which ends in `decide` or in nothing. Inside a sandbox the portal has one.
    std::function<void()> askUser;
    /// What widgets show may have changed; when a consent `isRevoked`, names must vanish.
    std::function<void(bool isRevoked)> changed;
  };
  /// The error is a sentence for the user, without its full stop.
  using Decided = std::function<void(std::expected<void, std::string>)>;

  /// Everything outlives this. The extension is told of what is decided from now on.
  explicit WifiNames(Surroundings surroundings);
  ~WifiNames();
  WifiNames(const WifiNames&) = delete;
  WifiNames& operator=(const WifiNames&) = delete;

  /// What counts now.
  [[nodiscard]] ConsentDecision decision() const;
  /// Whether a consent is a sandbox's portal's to give.
  [[nodiscard]] bool isConsentElsewhere() const { return surroundings_.authority != nullptr; }

  /// The machine's network is not what it was: Wi-Fi that has come may be asked about.
  void networkPathChanged();

  /// Records it, or has the portal asked. `decided` is called once, perhaps inside of the call.
  void decide(ConsentDecision decision, const Decided& decided);

 private:
  void request();
  void tellChange();
  [[nodiscard]] std::expected<void, std::string> record(ConsentDecision decision);

  Surroundings surroundings_;
  std::unique_ptr<LocationManager> manager_;
  std::int32_t told_;
  bool isWanted_ = false;  ///< by a widget, when there was no Wi-Fi to ask about
  bool hasAsked_ = false;
};

}  // namespace lanternfold
