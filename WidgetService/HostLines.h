// What a host says to an extension, each as one line of JSON without the line's end.
//
// Made by: the host's client of the extension. Read by: `parseHostMessage`, which understands what
// went in. Written down in Docs/formats/widget-service.md.
#pragma once

#include <string>

#include "WidgetService/ServiceMessage.h"

namespace lanternfold {

/// Texts that are no UTF-8 have U+FFFD in place of what is wrong. Pure; any thread.
[[nodiscard]] std::string requestLine(const ServiceRequest& request);
[[nodiscard]] std::string cancelLine(const CancelNotification& notification);
[[nodiscard]] std::string locationChangedLine(const LocationNotification& notification);

}  // namespace lanternfold
