#include "CommandLine/Commands/RenderPlan.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

#include "CommandLine/PlainNumber.h"
#include "CommandLine/PrintableText.h"
#include "NetworkWidgetVexExtension/Views/WidgetFamily.h"
#include "Support/AsciiCase.h"

namespace lanternfold {
namespace {

constexpr std::string_view adapterWidgetKind = "NetworkAdapterWidget";
constexpr double smallestScale = 0.5;
constexpr double largestScale = 8;

template <typename Value>
struct NamedValue {
  std::string_view name;
  Value value;
};

/// The kinds, and whether this version draws them.
constexpr std::array<NamedValue<bool>, 5> kinds = {{{"PanoramicNetworkStateWidget", false},
                                                    {"InternetNetworkStateWidget", false},
                                                    {adapterWidgetKind, true},
                                                    {"BandwidthMonitorWidget", false},
                                                    {"WlanNetworkStateWidget", false}}};
/// The families, and whether the adapter widget comes in them.
constexpr std::array<NamedValue<bool>, 3> families = {
    {{"small", false}, {"medium", true}, {"large", false}}};
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

std::optional<std::string> faultOfKind(const std::string& kind) {
  const bool* drawn = valueNamed(kinds, kind);
  if (drawn == nullptr)
    return "unknown widget kind " + inQuotes(kind) + "; use NetworkAdapterWidget";
  if (*drawn) return std::nullopt;
  return "the widget kind " + inQuotes(kind) +
         " cannot be drawn by this version; use NetworkAdapterWidget";
}

std::optional<std::string> faultOfFamily(const std::string& family) {
  const bool* offered = valueNamed(families, family);
  if (offered == nullptr) return "unknown family " + inQuotes(family) + "; use medium";
  if (*offered) return std::nullopt;
  return "the adapter widget has no " + family + " family; use medium";
}

/// The sentence about the first option that is wrong, or none.
std::optional<std::string> faultOf(const RenderOptions& options) {
  if (auto fault = faultOfKind(options.kind)) return fault;
  if (auto fault = faultOfFamily(options.family)) return fault;
  if (valueNamed(schemes, options.scheme) == nullptr) {
    return "unknown scheme " + inQuotes(options.scheme) + "; use light or dark";
  }
  if (!parseScale(options.scale)) {
    return std::string("--scale takes ") + scaleValues + ", not " + inQuotes(options.scale);
  }
  if (valueNamed(entries, options.entry) == nullptr) {
    return "unknown entry " + inQuotes(options.entry) + "; use placeholder, snapshot or timeline";
  }
  if (options.adapter && options.adapter->empty()) {
    return "--adapter needs an interface's name; \"lanternfold-widgets interfaces\" lists them";
  }
  return std::nullopt;
}

AdapterConfigurationIntent configurationOf(const RenderOptions& options) {
  AdapterConfigurationIntent configuration{.showTimestamp = options.showTimestamp};
  if (options.adapter) {
    configuration.adapter =
        NetworkAdapter{.identifier = options.adapter, .display = *options.adapter};
  }
  return configuration;
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
  return RenderPlan{.entry = *valueNamed(entries, options.entry),
                    .configuration = configurationOf(options),
                    .picture = {.sizePoints = widgetSize(WidgetFamily::medium),
                                .cornerRadiusPoints = widgetCornerRadius,
                                .scheme = *valueNamed(schemes, options.scheme),
                                .scale = *parseScale(options.scale),
                                .format = *format},
                    .output = options.output};
}

}  // namespace lanternfold
