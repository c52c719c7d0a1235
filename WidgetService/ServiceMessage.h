// What a host says to an extension, as plain values: JSON-RPC 2.0, one object a line.
//
// Made by: `parseHostMessage`. Read by: the extension's session. Written down in
// Docs/formats/widget-service.md.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

#include "WidgetService/Widget.h"

namespace lanternfold {

/// Bytes of the longest line that either side may send, the line's end not counted.
inline constexpr std::size_t longestServiceLine = std::size_t{4} * 1024 * 1024;

/// Bytes of the longest texts that a host may send, by what they are.
inline constexpr std::size_t longestIdentifierText = 256;
inline constexpr std::size_t longestKindText = 256;
inline constexpr std::size_t longestIntentText = 256;
inline constexpr std::size_t longestAdapterText = 1024;

/// As the host chose it: a text of at most `longestIdentifierText` bytes, or a whole number within
/// ±2^53; null is one of its own, which no notification has.
using RequestIdentifier = std::variant<std::nullptr_t, std::int64_t, std::string>;

/// The codes of JSON-RPC, and those that this service adds.
enum class ServiceErrorCode : int {
  parseError = -32700,      ///< no JSON
  invalidRequest = -32600,  ///< JSON, but no request
  methodNotFound = -32601,
  invalidParams = -32602,  ///< an unknown kind, a family that it lacks, wrong types
  internalError = -32603,  ///< an answer that cannot be sent
  busy = -32000,           ///< too many requests wait already
};

struct ServiceError {
  ServiceErrorCode code = ServiceErrorCode::invalidRequest;
  std::string message;  ///< one sentence without its full stop
  friend bool operator==(const ServiceError&, const ServiceError&) = default;
};

/// `widgets/list`
struct ListCall {
  friend bool operator==(const ListCall&, const ListCall&) = default;
};

/// `widget/placeholder`, `widget/snapshot`, `widget/timeline`
struct EntryCall {
  enum class Kind { placeholder, snapshot, timeline };
  Kind entry = Kind::placeholder;
  std::string kind;  ///< the widget's, not yet known to exist
  WidgetRequest request;
  friend bool operator==(const EntryCall&, const EntryCall&) = default;
};

/// `intent/perform`
struct PerformIntentCall {
  std::string intent;
  friend bool operator==(const PerformIntentCall&, const PerformIntentCall&) = default;
};

using ServiceCall = std::variant<ListCall, EntryCall, PerformIntentCall>;

struct ServiceRequest {
  RequestIdentifier id;
  ServiceCall call;
  friend bool operator==(const ServiceRequest&, const ServiceRequest&) = default;
};

/// `$/cancel`: nobody waits for that request any more.
struct CancelNotification {
  RequestIdentifier id;
  friend bool operator==(const CancelNotification&, const CancelNotification&) = default;
};

/// `location/changed`
struct LocationNotification {
  std::int32_t status = 0;  ///< a raw value of the authorization, -1 to 4
  friend bool operator==(const LocationNotification&, const LocationNotification&) = default;
};

/// A notification that is of no concern, or makes no sense: there is nobody to tell.
struct IgnoredNotification {
  friend bool operator==(const IgnoredNotification&, const IgnoredNotification&) = default;
};

/// To be answered with an error.
struct RefusedMessage {
  RequestIdentifier id;  ///< null when the message has none that could be understood
  ServiceError error;
  friend bool operator==(const RefusedMessage&, const RefusedMessage&) = default;
};

using HostMessage = std::variant<ServiceRequest, CancelNotification, LocationNotification,
                                 IgnoredNotification, RefusedMessage>;

/// Of one line without its end, any bytes at all. Whether the kind exists and comes in the family
/// is not looked at. What the peer said is quoted in errors shortened and escaped
/// (WidgetService/QuotedText.h). Pure; any thread.
[[nodiscard]] HostMessage parseHostMessage(std::string_view line);

}  // namespace lanternfold
