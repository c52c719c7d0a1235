// What the host of the widgets is called on the session bus.
//
// Read by: the host's side and the other programs' side, and the host's application object.
#pragma once

namespace lanternfold {

/// Also the id of the application, and what its desktop file is called.
inline constexpr const char* widgetHostBusName = "net.quernaple.LanternfoldX.Widgets";
inline constexpr const char* widgetHostObject = "/net/quernaple/LanternfoldX/Widgets";
inline constexpr const char* widgetControlInterface = "net.quernaple.LanternfoldX.Widgets.Control";

/// The error whose message is a sentence for the user.
inline constexpr const char* widgetControlRefusal =
    "net.quernaple.LanternfoldX.Widgets.Error.Refused";

}  // namespace lanternfold
