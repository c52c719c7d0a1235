#include "WidgetService/HostLines.h"

#include <utility>
#include <variant>

#include <nlohmann/json.hpp>

#include "WidgetService/EntryMethod.h"
#include "WidgetService/WidgetFamilyName.h"

namespace lanternfold {
namespace {

/// Members stand in the order in which they are written here.
using Json = nlohmann::ordered_json;

std::string lineOf(const Json& message) {
  return message.dump(-1, ' ', /*ensure_ascii=*/false, Json::error_handler_t::replace);
}

Json jsonOf(const RequestIdentifier& id) {
  return std::visit([](const auto& value) { return Json(value); }, id);
}

Json jsonOf(const AdapterParameter& adapter) {
  Json json = Json::object();
  if (adapter.identifier) json["identifier"] = *adapter.identifier;
  json["display"] = adapter.display;
  return json;
}

Json jsonOf(const ConfigurationParameters& configuration) {
  Json json = Json::object();
  if (configuration.showTimestamp) json["showTimestamp"] = *configuration.showTimestamp;
  if (configuration.adapter) json["adapter"] = jsonOf(*configuration.adapter);
  return json;
}

/// A method, and its parameters as an object.
struct Call {
  std::string_view method;
  Json parameters;
};

struct CallOf {
  Call operator()(const ListCall& /*call*/) const { return {"widgets/list", Json::object()}; }
  Call operator()(const EntryCall& call) const {
    Json parameters{{"kind", call.kind}, {"family", widgetFamilyName(call.request.family)}};
    parameters["configuration"] = jsonOf(call.request.configuration);
    parameters["context"] = Json{{"isPreview", call.request.context.isPreview}};
    return {entryMethod(call.entry), std::move(parameters)};
  }
  Call operator()(const PerformIntentCall& call) const {
    return {"intent/perform", Json{{"intent", call.intent}}};
  }
};

std::string notificationLine(std::string_view method, Json parameters) {
  return lineOf(Json{{"jsonrpc", "2.0"}, {"method", method}, {"params", std::move(parameters)}});
}

}  // namespace

std::string requestLine(const ServiceRequest& request) {
  Call call = std::visit(CallOf{}, request.call);
  return lineOf(Json{{"jsonrpc", "2.0"},
                     {"id", jsonOf(request.id)},
                     {"method", call.method},
                     {"params", std::move(call.parameters)}});
}

std::string cancelLine(const CancelNotification& notification) {
  return notificationLine("$/cancel", Json{{"id", jsonOf(notification.id)}});
}

std::string locationChangedLine(const LocationNotification& notification) {
  return notificationLine("location/changed", Json{{"status", notification.status}});
}

}  // namespace lanternfold
