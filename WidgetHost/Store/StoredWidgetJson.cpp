#include "WidgetHost/Store/StoredWidgetJson.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string_view>
#include <utility>

#include "WidgetHost/Store/WidgetStoreText.h"
#include "WidgetService/QuotedText.h"
#include "WidgetService/ServiceMessage.h"
#include "WidgetService/WidgetFamilyName.h"

namespace lanternfold {
namespace {

/// Takes members out of an object and keeps the first fault.
class MemberReader {
 public:
  explicit MemberReader(const StoreJson& object) : object_(object) {}

  /// Null, and a member that is not there.
  [[nodiscard]] const StoreJson* find(const char* name) const {
    const auto member = object_.find(name);
    return member == object_.end() || member->is_null() ? nullptr : &*member;
  }

  std::optional<std::string> optionalText(const char* name, std::size_t longest) {
    const StoreJson* const member = find(name);
    if (member == nullptr) return std::nullopt;
    if (!member->is_string()) return fail(name, "is no text");
    const auto& text = member->get_ref<const std::string&>();
    if (text.size() > longest) return fail(name, "is too long");
    return text;
  }

  std::string text(const char* name, std::size_t longest) {
    auto text = optionalText(name, longest);
    if (!text || text->empty()) fail(name, "is missing");
    return std::move(text).value_or("");
  }

  std::optional<bool> optionalFlag(const char* name) {
    const StoreJson* const member = find(name);
    if (member == nullptr) return std::nullopt;
    if (member->is_boolean()) return member->get<bool>();
    fail(name, "is neither true nor false");
    return std::nullopt;
  }

  /// Brought within the bounds; 0 for one that is not there.
  int coordinate(const char* name) {
    const StoreJson* const member = find(name);
    if (member == nullptr) return 0;
    if (!member->is_number()) {
      fail(name, "is no number");
      return 0;
    }
    constexpr double furthest = furthestPosition;
    return static_cast<int>(std::round(std::clamp(member->get<double>(), -furthest, furthest)));
  }

  std::nullopt_t fail(const char* name, std::string_view clause) {
    if (fault_.empty()) fault_ = "\"" + std::string(name) + "\" " + std::string(clause);
    return std::nullopt;
  }

  [[nodiscard]] const std::string& fault() const { return fault_; }

 private:
  const StoreJson& object_;
  std::string fault_;
};

/// Ids stand on command lines and in a terminal.
bool isWidgetId(std::string_view id) {
  return !id.empty() && std::ranges::all_of(id, [](char c) { return c > ' ' && c <= '~'; });
}

std::expected<AdapterParameter, std::string> adapterOf(const StoreJson& value) {
  if (!value.is_object()) return std::unexpected("\"adapter\" is no object");
  MemberReader members(value);
  AdapterParameter adapter{
      .identifier = members.optionalText("identifier", longestAdapterText),
      .display = members.optionalText("display", longestAdapterText).value_or("")};
  if (!members.fault().empty()) return std::unexpected(members.fault());
  return adapter;
}

std::expected<ConfigurationParameters, std::string> configurationOf(const StoreJson* value) {
  ConfigurationParameters configuration;
  if (value == nullptr) return configuration;
  if (!value->is_object()) return std::unexpected("\"configuration\" is no object");
  MemberReader members(*value);
  configuration.showTimestamp = members.optionalFlag("showTimestamp");
  if (!members.fault().empty()) return std::unexpected(members.fault());
  if (const StoreJson* const adapter = members.find("adapter")) {
    auto chosen = adapterOf(*adapter);
    if (!chosen) return std::unexpected(std::move(chosen).error());
    configuration.adapter = std::move(*chosen);
  }
  return configuration;
}

WidgetFamily familyOf(MemberReader& members) {
  const std::string name = members.text("family", longestKindText);
  const auto family = widgetFamilyOfName(name);
  if (!family) members.fail("family", quotedText(name) + " is none that is known");
  return family.value_or(WidgetFamily::small);
}

/// Members that are gone from `configuration` go from the object as well.
void putConfiguration(StoreJson& object, const ConfigurationParameters& configuration) {
  if (configuration.showTimestamp) {
    object["showTimestamp"] = *configuration.showTimestamp;
  } else {
    object.erase("showTimestamp");
  }
  if (!configuration.adapter) {
    object.erase("adapter");
    return;
  }
  StoreJson& adapter = object["adapter"];
  if (!adapter.is_object()) adapter = StoreJson::object();
  if (configuration.adapter->identifier) {
    adapter["identifier"] = *configuration.adapter->identifier;
  } else {
    adapter.erase("identifier");
  }
  adapter["display"] = configuration.adapter->display;
}

}  // namespace

std::expected<PlacedWidget, std::string> placedWidgetOf(const StoreJson& value) {
  if (!value.is_object()) return std::unexpected("it is no object");
  MemberReader members(value);
  PlacedWidget widget;
  widget.id = members.text("id", longestWidgetIdBytes);
  if (!isWidgetId(widget.id)) members.fail("id", "holds more than visible ASCII characters");
  widget.kind = members.text("kind", longestKindText);
  widget.family = familyOf(members);
  widget.position.monitor = members.optionalText("monitor", longestMonitorName).value_or("");
  widget.position.x = members.coordinate("x");
  widget.position.y = members.coordinate("y");
  if (!members.fault().empty()) return std::unexpected(members.fault());
  auto configuration = configurationOf(members.find("configuration"));
  if (!configuration) return std::unexpected(std::move(configuration).error());
  widget.configuration = std::move(*configuration);
  return widget;
}

void putPlacedWidget(StoreJson& value, const PlacedWidget& widget) {
  value["id"] = widget.id;
  value["kind"] = widget.kind;
  value["family"] = std::string(widgetFamilyName(widget.family));
  StoreJson& configuration = value["configuration"];
  if (!configuration.is_object()) configuration = StoreJson::object();
  putConfiguration(configuration, widget.configuration);
  value["monitor"] = widget.position.monitor;
  value["x"] = widget.position.x;
  value["y"] = widget.position.y;
}

}  // namespace lanternfold
