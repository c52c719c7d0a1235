// The seam to how the user's desktop wants programs to look.
//
// Linux side: `PortalAppearance` (the desktop portal's settings). Fake: `FakeDesktopAppearance`.
#pragma once

#include <functional>

namespace lanternfold {

enum class PreferredColourScheme {
  noPreference,  ///< nor one that can be found out
  dark,
  light,
};

/// Everything on the main queue.
class DesktopAppearance {
 public:
  virtual ~DesktopAppearance() = default;

  /// Once. `changed` is called on the main queue, never inside the call, when the preference
  /// becomes known and whenever it changes, until this is destroyed.
  virtual void start(std::function<void(PreferredColourScheme)> changed) = 0;
};

}  // namespace lanternfold
