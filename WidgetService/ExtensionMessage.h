// What an extension says to a host, as plain values: JSON-RPC 2.0, one object a line.
//
// Made by: `parseExtensionMessage`. Read by: the host's client of the extension, which knows what
// each answer is to be a result of (WidgetService/ReceivedResult.h). Written down in
// Docs/formats/widget-service.md.
#pragma once

#include <string>
#include <string_view>
#include <variant>

#include "ViewTree/ArchiveValue.h"
#include "WidgetService/ServiceMessage.h"

namespace lanternfold {

struct ReceivedAnswer {
  RequestIdentifier id;
  ArchiveValue result;  ///< not looked at yet
};

struct ReceivedRefusal {
  RequestIdentifier id;  ///< null when the extension has not understood which request it was
  std::string message;   ///< what it says of the reason: one line, fit to show, bounded
};

/// `location/request`
struct ConsentNotification {
  bool whenInUse = false;
};

/// A notification of a later extension, and a request, which no host answers.
struct UnknownExtensionMessage {};

/// Nothing that an extension may say.
struct ExtensionNonsense {
  std::string fault;  ///< a clause about what is wrong, fit to show, without its full stop
};

using ExtensionMessage = std::variant<ReceivedAnswer, ReceivedRefusal, ConsentNotification,
                                      UnknownExtensionMessage, ExtensionNonsense>;

/// Of one line without its end, any bytes at all. Time and memory are bounded
/// (ViewTree/ArchiveValue.h). Pure; any thread.
[[nodiscard]] ExtensionMessage parseExtensionMessage(std::string_view line);

}  // namespace lanternfold
