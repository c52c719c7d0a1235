// Follows the desktop's choice of light or dark, for the cards and for the toolkit's own windows.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <sigc++/connection.h>
#include <string>

#include "HostProgram/Display/SchemeChoice.h"

namespace lanternfold {

/// Main thread.
class SchemeWatch {
 public:
  /// Neither is called inside of a call.
  struct Handlers {
    /// The scheme has become another one.
    std::function<void(ColourScheme)> changed;
    /// Called once, when the desktop has said what it prefers, or has been silent for a quarter of
    /// a second: what is shown from now on is not likely to change its colours at once.
    std::function<void()> settled;
  };

  /// `appearance`, which is started, may outlive this. `forcedTheme` is the name of the toolkit's
  /// theme when it is not the one of the desktop's settings.
  SchemeWatch(DesktopAppearance& appearance, std::optional<std::string> forcedTheme,
              Handlers handlers);
  ~SchemeWatch();
  SchemeWatch(const SchemeWatch&) = delete;
  SchemeWatch& operator=(const SchemeWatch&) = delete;

  [[nodiscard]] ColourScheme scheme() const { return scheme_; }

 private:
  void readTheme();
  void choose();
  void settle();

  Handlers handlers_;
  std::optional<std::string> forcedTheme_;
  PreferredColourScheme preference_ = PreferredColourScheme::noPreference;
  std::string themeName_;
  bool themePrefersDark_ = false;  ///< as the user has set it, before the cards' scheme did
  ColourScheme scheme_ = ColourScheme::light;
  sigc::connection themeChanges_;
  sigc::connection patience_;
  /// What the appearance looks at that may tell of a change when this is gone.
  std::shared_ptr<bool> isAlive_ = std::make_shared<bool>(true);
};

}  // namespace lanternfold
