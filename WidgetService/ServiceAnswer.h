// What an extension says to a host, each as one line of JSON without the line's end.
//
// Made by: the extension's session; the bare results also by the command line. Read by: hosts.
// Written down in Docs/formats/widget-service.md.
#pragma once

#include <cstddef>
#include <expected>
#include <string>
#include <vector>

#include "WidgetService/ServiceMessage.h"
#include "WidgetService/Widget.h"

namespace lanternfold {

/// Bytes of the longest sentence that an error carries; a longer one is cut.
inline constexpr std::size_t longestErrorText = 1024;

/// The result of `widgets/list`, of `widget/placeholder` and `widget/snapshot`, of
/// `widget/timeline`, and of `intent/perform`, as JSON on one line. Texts that are no UTF-8 have
/// U+FFFD in place of what is wrong.
[[nodiscard]] std::string widgetListResult(const std::vector<WidgetDescription>& widgets);
[[nodiscard]] std::string entryResult(const ViewEntry& entry);
[[nodiscard]] std::string timelineResult(const Timeline<ViewEntry>& timeline);
[[nodiscard]] std::string emptyResult();

/// The line that answers `id` with `resultJson`, one of the above, or with the error. An answer
/// longer than `longestServiceLine` is an internal error instead. The line of an error has less
/// than 4 KiB for every identifier that `parseHostMessage` lets through; its message is escaped
/// (Support/EscapedText.h).
[[nodiscard]] std::string answerLine(const RequestIdentifier& id,
                                     const std::expected<std::string, ServiceError>& resultJson);

/// The line of the notification `location/request`.
[[nodiscard]] std::string locationRequestLine(bool whenInUse);

}  // namespace lanternfold
