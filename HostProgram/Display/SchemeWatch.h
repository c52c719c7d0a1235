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
  /// `changed` is called when the scheme becomes another one, never inside of the call.
  /// `appearance`, which is started, may outlive this.
  SchemeWatch(DesktopAppearance& appearance, std::function<void(ColourScheme)> changed);
  ~SchemeWatch();
  SchemeWatch(const SchemeWatch&) = delete;
  SchemeWatch& operator=(const SchemeWatch&) = delete;

  [[nodiscard]] ColourScheme scheme() const { return scheme_; }

 private:
  void readTheme();
  void choose();

  std::function<void(ColourScheme)> changed_;
  PreferredColourScheme preference_ = PreferredColourScheme::noPreference;
  std::string themeName_;
  bool themePrefersDark_ = false;  ///< as the user has set it, before the cards' scheme did
  ColourScheme scheme_ = ColourScheme::light;
  sigc::connection themeChanges_;
  /// What the appearance looks at that may tell of a change when this is gone.
  std::shared_ptr<bool> isAlive_ = std::make_shared<bool>(true);
};

}  // namespace lanternfold
