// The end of the display, with which the program ends: the toolkit has nothing else in mind.
//
// Used by: the setting up of the toolkit.
#pragma once

namespace lanternfold {

inline constexpr const char* displayGone =
    "the display has gone, and the widgets with it; start them again with \"lanternfold-widgets "
    "show\" in the next session";

/// Of an X11 display the toolkit would say nothing. Once, after it has been opened; of no effect
/// on other displays.
void sayWhenX11IsGone();

}  // namespace lanternfold
