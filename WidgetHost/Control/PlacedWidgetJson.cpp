#include "WidgetHost/Control/PlacedWidgetJson.h"

#include <nlohmann/json.hpp>

#include "WidgetService/WidgetFamilyName.h"

namespace lanternfold {
namespace {

using Json = nlohmann::ordered_json;

Json configurationJson(const ConfigurationParameters& configuration) {
  Json json = Json::object();
  if (configuration.showTimestamp) json["showTimestamp"] = *configuration.showTimestamp;
  if (const auto& adapter = configuration.adapter) {
    json["adapter"] = {
        {"identifier", adapter->identifier ? Json(*adapter->identifier) : Json(nullptr)},
        {"display", adapter->display}};
  }
  return json;
}

Json widgetJson(const PlacedWidget& widget) {
  return {{"id", widget.id},
          {"kind", widget.kind},
          {"family", widgetFamilyName(widget.family)},
          {"configuration", configurationJson(widget.configuration)},
          {"monitor", widget.position.monitor},
          {"x", widget.position.x},
          {"y", widget.position.y}};
}

}  // namespace

std::string placedWidgetsJson(std::span<const PlacedWidget> widgets) {
  Json json = Json::array();
  for (const PlacedWidget& widget : widgets) json.push_back(widgetJson(widget));
  constexpr int oneLine = -1;
  return json.dump(oneLine, ' ', /*ensure_ascii=*/false, Json::error_handler_t::replace);
}

}  // namespace lanternfold
