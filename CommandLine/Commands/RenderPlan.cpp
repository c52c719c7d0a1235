#include "CommandLine/Commands/RenderPlan.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>
#include <vector>

#include "CommandLine/PlainNumber.h"
#include "Support/AsciiCase.h"
#include "WidgetService/WidgetFamily.h"
#include "Wiring/PrintableText.h"

namespace lanternfold {
namespace {

constexpr double smallestScale = 0.5;
constexpr double largestScale = 8;

template <typename Value>
struct NamedValue {
  std::string_view name;
  Value value;
};

/// The sizes a kind of widget comes in, from the smallest; none of one that this version does not
/// draw.
struct KindOfWidget {
  std::vector<WidgetFamily> families;
  /// None for the adapter widget, which has no choice of them.
  std::optional<NetworkSourceCategory> categories;
};

const std::array<NamedValue<KindOfWidget>, 5>& kinds() {
  static const std::array<NamedValue<KindOfWidget>, 5> all = {
      {{"PanoramicNetworkStateWidget", {}},
       {"InternetNetworkStateWidget", {}},
       {"NetworkAdapterWidget", {{WidgetFamily::medium}, std::nullopt}},
       {"BandwidthMonitorWidget", {}},
       {"WlanNetworkStateWidget",
        {{WidgetFamily::small, WidgetFamily::medium}, NetworkSourceCategory::wlan()}}}};
  return all;
}

constexpr std::array<NamedValue<WidgetFamily>, 3> families = {{{"small", WidgetFamily::small},
                                                               {"medium", WidgetFamily::medium},
                                                               {"large", WidgetFamily::large}}};
constexpr std::array<NamedValue<ColourScheme>, 2> schemes = {
    {{"light", ColourScheme::light}, {"dark", ColourScheme::dark}}};
constexpr std::array<NamedValue<EntrySource>, 3> entries = {
    {{"placeholder", EntrySource::placeholder},
     {"snapshot", EntrySource::snapshot},
     {"timeline", EntrySource::timeline}}};
constexpr std::array<NamedValue<PictureFormat>, 3> formats = {
    {{".png", PictureFormat::png}, {".svg", PictureFormat::svg}, {".pdf", PictureFormat::pdf}}};

/// The value called `name`, or null.
template <typename Value, std::size_t count>
const Value* valueNamed(const std::array<NamedValue<Value>, count>& values, std::string_view name) {
  const auto found = std::ranges::find(values, name, &NamedValue<Value>::name);
  return found == values.end() ? nullptr : &found->value;
}

std::optional<double> parseScale(const std::string& text) {
  const auto scale = plainNumber(text);
  return scale && *scale >= smallestScale && *scale <= largestScale ? scale : std::nullopt;
}

std::optional<std::string> faultOfKind(const std::string& name) {
  const KindOfWidget* kind = valueNamed(kinds(), name);
  if (kind == nullptr) {
    return "unknown widget kind " + inQuotes(name) + "; use " + std::string(drawableKinds);
  }
  if (!kind->families.empty()) return std::nullopt;
  return "the widget kind " + inQuotes(name) + " cannot be drawn by this version; use " +
         std::string(drawableKinds);
}

std::string namesOf(const std::vector<WidgetFamily>& offered) {
  std::string names;
  for (const auto& [name, family] : families) {
    if (std::ranges::find(offered, family) == offered.end()) continue;
    if (!names.empty()) names += " or ";
    names += name;
  }
  return names;
}

std::optional<std::string> faultOfFamily(const std::string& kind,
                                         const std::optional<std::string>& name) {
  if (!name) return std::nullopt;
  const std::vector<WidgetFamily>& offered = valueNamed(kinds(), kind)->families;
  const WidgetFamily* family = valueNamed(families, *name);
  if (family == nullptr) {
    return "unknown family " + inQuotes(*name) + "; use " + namesOf(offered);
  }
  if (std::ranges::find(offered, *family) != offered.end()) return std::nullopt;
  return kind + " has no " + *name + " family; use " + namesOf(offered);
}

/// The sentence about the first option that is wrong, or none.
std::optional<std::string> faultOf(const RenderOptions& options) {
  if (auto fault = faultOfKind(options.kind)) return fault;
  if (auto fault = faultOfFamily(options.kind, options.family)) return fault;
  if (valueNamed(schemes, options.scheme) == nullptr) {
    return "unknown scheme " + inQuotes(options.scheme) + "; use light or dark";
  }
  if (!parseScale(options.scale)) {
    return std::string("--scale takes ") + scaleValues + ", not " + inQuotes(options.scale);
  }
  if (valueNamed(entries, options.entry) == nullptr) {
    return "unknown entry " + inQuotes(options.entry) + "; use placeholder, snapshot or timeline";
  }
  if (options.adapter && valueNamed(kinds(), options.kind)->categories) {
    return "--adapter chooses what NetworkAdapterWidget shows; " + options.kind +
           " shows what there is";
  }
  if (options.adapter && options.adapter->empty()) {
    return "--adapter needs an interface's name; \"lanternfold-widgets interfaces\" lists them";
  }
  return std::nullopt;
}

std::variant<AdapterWidgetPlan, StateWidgetPlan> widgetOf(const RenderOptions& options) {
  if (const auto categories = valueNamed(kinds(), options.kind)->categories) {
    return StateWidgetPlan{.categories = *categories,
                           .configuration = {.showTimestamp = options.showTimestamp}};
  }
  AdapterConfigurationIntent configuration{.showTimestamp = options.showTimestamp};
  if (options.adapter) {
    configuration.adapter =
        NetworkAdapter{.identifier = options.adapter, .display = *options.adapter};
  }
  return AdapterWidgetPlan{std::move(configuration)};
}

}  // namespace

std::expected<RenderPlan, CommandFailure> planRender(const RenderOptions& options) {
  if (const auto fault = faultOf(options)) return std::unexpected(badArguments(*fault));
  const PictureFormat* format =
      valueNamed(formats, asciiLowercased(options.output.extension().string()));
  if (format == nullptr) {
    return std::unexpected(badArguments("cannot tell a picture format from " +
                                        inQuotes(options.output.string()) +
                                        "; let the file's name end in .png, .svg or .pdf"));
  }
  const WidgetFamily family = options.family ? *valueNamed(families, *options.family)
                                             : valueNamed(kinds(), options.kind)->families.back();
  return RenderPlan{.entry = *valueNamed(entries, options.entry),
                    .widget = widgetOf(options),
                    .family = family,
                    .picture = {.sizePoints = widgetSize(family),
                                .cornerRadiusPoints = widgetCornerRadius,
                                .scheme = *valueNamed(schemes, options.scheme),
                                .scale = *parseScale(options.scale),
                                .format = *format},
                    .output = options.output};
}

}  // namespace lanternfold
