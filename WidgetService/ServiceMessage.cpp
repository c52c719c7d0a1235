#include "WidgetService/ServiceMessage.h"

#include <algorithm>
#include <array>
#include <expected>
#include <optional>
#include <utility>

#include "WidgetService/EntryMethod.h"
#include "WidgetService/MessageDocument.h"
#include "WidgetService/MessageParameters.h"
#include "WidgetService/QuotedText.h"

namespace lanternfold {
namespace {

RefusedMessage refusal(RequestIdentifier id, ServiceErrorCode code, std::string message) {
  return {.id = std::move(id), .error = {.code = code, .message = std::move(message)}};
}

// Requests

ServiceCall listCall(MessageParameters& /*parameters*/) { return ListCall{}; }

std::optional<AdapterParameter> adapterParameter(MessageParameters& parameters) {
  if (!parameters.hasObject("params.configuration.adapter")) return std::nullopt;
  AdapterParameter adapter;
  adapter.identifier =
      parameters.optionalText("params.configuration.adapter.identifier", longestAdapterText);
  adapter.display =
      parameters.optionalText("params.configuration.adapter.display", longestAdapterText)
          .value_or(adapter.identifier.value_or(std::string()));
  return adapter;
}

ConfigurationParameters configurationParameters(MessageParameters& parameters) {
  if (!parameters.hasObject("params.configuration")) return {};
  return {.showTimestamp = parameters.optionalFlag("params.configuration.showTimestamp"),
          .adapter = adapterParameter(parameters)};
}

TimelineProviderContext contextParameters(MessageParameters& parameters) {
  if (!parameters.hasObject("params.context")) return {};
  return {.isPreview = parameters.optionalFlag("params.context.isPreview").value_or(false)};
}

template <EntryCall::Kind entry>
ServiceCall entryCall(MessageParameters& parameters) {
  EntryCall call;
  call.entry = entry;
  call.kind = parameters.text("params.kind", longestKindText);
  call.request.family = parameters.family("params.family");
  call.request.configuration = configurationParameters(parameters);
  call.request.context = contextParameters(parameters);
  return call;
}

ServiceCall performIntentCall(MessageParameters& parameters) {
  return PerformIntentCall{parameters.text("params.intent", longestIntentText)};
}

struct RequestMethod {
  std::string_view name;
  ServiceCall (*call)(MessageParameters&);
};

template <EntryCall::Kind entry>
constexpr RequestMethod entryRequest{entryMethod(entry), entryCall<entry>};

constexpr std::array requestMethods{
    RequestMethod{"widgets/list", listCall},
    entryRequest<EntryCall::Kind::placeholder>,
    entryRequest<EntryCall::Kind::snapshot>,
    entryRequest<EntryCall::Kind::timeline>,
    RequestMethod{"intent/perform", performIntentCall},
};

// Notifications

HostMessage cancelNotification(MessageParameters& parameters) {
  return CancelNotification{parameters.identifier("params.id")};
}

HostMessage locationNotification(MessageParameters& parameters) {
  const std::int64_t status = parameters.number("params.status", -1, 4);
  return LocationNotification{static_cast<std::int32_t>(status)};
}

struct NotificationMethod {
  std::string_view name;
  HostMessage (*notification)(MessageParameters&);
};

constexpr std::array notificationMethods{
    NotificationMethod{"$/cancel", cancelNotification},
    NotificationMethod{"location/changed", locationNotification},
};

HostMessage parseRequest(RequestIdentifier id, const std::string& method,
                         const MessageDocument& message) {
  const auto* const found = std::ranges::find(requestMethods, method, &RequestMethod::name);
  if (found == requestMethods.end()) {
    const bool isNotification =
        std::ranges::find(notificationMethods, method, &NotificationMethod::name) !=
        notificationMethods.end();
    return refusal(std::move(id), ServiceErrorCode::methodNotFound,
                   quotedText(method) + (isNotification ? " is a notification and takes no id"
                                                        : " is no method of this service"));
  }
  MessageParameters parameters(message);
  parameters.hasObject("params");
  ServiceCall call = found->call(parameters);
  if (!parameters.fault().empty()) {
    return refusal(std::move(id), ServiceErrorCode::invalidParams, parameters.fault());
  }
  return ServiceRequest{.id = std::move(id), .call = std::move(call)};
}

HostMessage parseNotification(const std::string& method, const MessageDocument& message) {
  const auto* const found =
      std::ranges::find(notificationMethods, method, &NotificationMethod::name);
  if (found == notificationMethods.end()) return IgnoredNotification{};
  MessageParameters parameters(message);
  parameters.hasObject("params");
  HostMessage notification = found->notification(parameters);
  if (!parameters.fault().empty()) return IgnoredNotification{};
  return notification;
}

// What requests and notifications have in common

/// None for a notification.
std::expected<std::optional<RequestIdentifier>, std::string> identifierOf(
    const MessageDocument& message) {
  if (message.find("id") == nullptr) return std::nullopt;
  MessageParameters parameters(message);
  RequestIdentifier id = parameters.identifier("id");
  if (!parameters.fault().empty()) return std::unexpected(parameters.fault());
  return id;
}

/// What makes an object no message of this protocol, its identifier apart; empty when nothing does.
std::string envelopeFault(const MessageDocument& message) {
  for (const std::string_view member : {"jsonrpc", "method", "params"}) {
    if (message.repeated.contains(member)) return std::string(member) + " stands twice";
  }
  const MessageValue* const version = message.find("jsonrpc");
  if (version == nullptr) return "jsonrpc is missing";
  if (*version != MessageValue(std::string("2.0"))) return "jsonrpc is not \"2.0\"";
  const MessageValue* const method = message.find("method");
  if (method == nullptr) return "method is missing";
  if (!std::holds_alternative<std::string>(*method)) return "method is not a text";
  return {};
}

HostMessage parseObject(const MessageDocument& message) {
  auto id = identifierOf(message);
  if (!id) return refusal(nullptr, ServiceErrorCode::invalidRequest, id.error());
  if (std::string fault = envelopeFault(message); !fault.empty()) {
    return refusal(id->value_or(nullptr), ServiceErrorCode::invalidRequest, std::move(fault));
  }
  const auto& method = std::get<std::string>(*message.find("method"));
  if (!*id) return parseNotification(method, message);
  return parseRequest(std::move(**id), method, message);
}

}  // namespace

HostMessage parseHostMessage(std::string_view line) {
  const auto message = readMessageDocument(line);
  if (!message) return refusal(nullptr, ServiceErrorCode::parseError, message.error());
  if (message->isObject) return parseObject(*message);
  return refusal(nullptr, ServiceErrorCode::invalidRequest,
                 message->isArray ? "a batch is not taken: send one request a line"
                                  : "a message is an object");
}

}  // namespace lanternfold
