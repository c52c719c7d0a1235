// What an extension says to a host, each as one line of JSON without the line's end.
//
// Made by: the extension's session; the bare results also by the command line.
#pragma once

#include <expected>
#include <string>
#include <vector>

#include "WidgetService/ServiceMessage.h"
#include "WidgetService/Widget.h"

namespace lanternfold {

/// The result of `widgets/list`, of `widget/placeholder` and `widget/snapshot`, of
/// `widget/timeline`, and of `intent/perform`, as JSON.
[[nodiscard]] std::string widgetListResult(const std::vector<WidgetDescription>& widgets);
[[nodiscard]] std::string entryResult(const ViewEntry& entry);
[[nodiscard]] std::string timelineResult(const Timeline<ViewEntry>& timeline);
[[nodiscard]] std::string emptyResult();

/// The line that answers `id` with `resultJson`, one of the above, or with the error.
[[nodiscard]] std::string answerLine(const RequestIdentifier& id,
                                     const std::expected<std::string, ServiceError>& resultJson);

/// The line of the notification `location/request`.
[[nodiscard]] std::string locationRequestLine(bool whenInUse);

}  // namespace lanternfold
