// Follows the desktop's choice of light or dark, for the cards and for the toolkit's own windows.
#pragma once

#include <functional>
#include <memory>
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

  /// `appearance`, which is started, may outlive this.
  SchemeWatch(DesktopAppearance& appearance, Handlers handlers);
  ~SchemeWatch();
  SchemeWatch(const SchemeWatch&) = delete;
  SchemeWatch& operator=(const SchemeWatch&) = delete;

  [[nodiscard]] ColourScheme scheme() const { return scheme_; }

 private:
  void readTheme();
  void choose();
  void settle();

  Handlers handlers_;
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
