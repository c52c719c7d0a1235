// How an application runs that was started with a link, or with none.
//
// Called by: `HostApplication`, and `claimSoleHost` for a host that is not the first.
#pragma once

#include <giomm/application.h>
#include <optional>
#include <string>

namespace lanternfold {

/// Has the first application of its name open `link`, or activates it without one. Returns at once
/// in any other than the first, there when somebody quits it. `application` is registered.
void runFromLink(Gio::Application& application, const std::optional<std::string>& link);

}  // namespace lanternfold
