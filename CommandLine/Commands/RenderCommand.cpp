#include "CommandLine/Commands/RenderCommand.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "CommandLine/AdapterEntry.h"
#include "CommandLine/AtomicFile.h"
#include "NetworkWidgetVexExtension/Views/NetworkAdapterWidgetEntryView.h"
#include "Rendering/PictureRenderer.h"
#include "Support/AsciiCase.h"
#include "Support/RelativeDateText.h"

namespace lanternfold {
namespace {

constexpr std::string_view adapterWidgetKind = "NetworkAdapterWidget";

/// The kinds of the other widgets, which this version cannot draw.
constexpr std::array<std::string_view, 4> otherKinds = {
    "PanoramicNetworkStateWidget", "InternetNetworkStateWidget", "BandwidthMonitorWidget",
    "WlanNetworkStateWidget"};

/// The options once they have been checked.
struct RenderPlan {
  EntrySource entry = EntrySource::timeline;
  AdapterConfigurationIntent configuration;
  PictureRequest picture;
  std::filesystem::path output;
};

template <typename Value>
struct NamedValue {
  std::string_view name;
  Value value;
};

constexpr std::array<NamedValue<ColourScheme>, 2> schemes = {{
    {"light", ColourScheme::light},
    {"dark", ColourScheme::dark},
}};
constexpr std::array<NamedValue<EntrySource>, 3> entries = {{
    {"placeholder", EntrySource::placeholder},
    {"snapshot", EntrySource::snapshot},
    {"timeline", EntrySource::timeline},
}};
constexpr std::array<NamedValue<PictureFormat>, 3> formats = {{
    {".png", PictureFormat::png},
    {".svg", PictureFormat::svg},
    {".pdf", PictureFormat::pdf},
}};

/// The value called `name`, or none.
template <typename Value, std::size_t count>
std::optional<Value> valueNamed(const std::array<NamedValue<Value>, count>& values,
                                std::string_view name) {
  const auto found = std::ranges::find(values, name, &NamedValue<Value>::name);
  return found == values.end() ? std::nullopt : std::optional(found->value);
}

std::expected<void, CommandFailure> checkKind(const std::string& kind) {
  if (kind == adapterWidgetKind) return {};
  if (std::ranges::find(otherKinds, kind) != otherKinds.end()) {
    return std::unexpected(badArguments("the widget kind \"" + kind +
                                        "\" cannot be drawn by this version; use "
                                        "NetworkAdapterWidget"));
  }
  return std::unexpected(
      badArguments("unknown widget kind \"" + kind + "\"; use NetworkAdapterWidget"));
}

std::expected<void, CommandFailure> checkFamily(const std::string& family) {
  if (family == "medium") return {};
  if (family == "small" || family == "large") {
    return std::unexpected(
        badArguments("the adapter widget has no " + family + " family; use --family medium"));
  }
  return std::unexpected(
      badArguments("unknown family \"" + family + "\"; the adapter widget has medium"));
}

std::expected<void, CommandFailure> checkRanges(const RenderOptions& options) {
  constexpr double smallestScale = 0.5;
  constexpr double largestScale = 8;
  if (!(options.scale >= smallestScale && options.scale <= largestScale)) {
    return std::unexpected(badArguments("the scale must be between 0.5 and 8"));
  }
  if (options.adapter && options.adapter->empty()) {
    return std::unexpected(badArguments(
        "--adapter needs an interface's name; \"lanternfold-widgets interfaces\" lists them"));
  }
  return {};
}

std::expected<RenderPlan, CommandFailure> checked(const RenderOptions& options) {
  if (auto kind = checkKind(options.kind); !kind) return std::unexpected(kind.error());
  if (auto family = checkFamily(options.family); !family) return std::unexpected(family.error());
  if (auto ranges = checkRanges(options); !ranges) return std::unexpected(ranges.error());
  const auto scheme = valueNamed(schemes, options.scheme);
  if (!scheme) {
    return std::unexpected(
        badArguments("unknown scheme \"" + options.scheme + "\"; use light or dark"));
  }
  const auto entry = valueNamed(entries, options.entry);
  if (!entry) {
    return std::unexpected(badArguments("unknown entry \"" + options.entry +
                                        "\"; use placeholder, snapshot or timeline"));
  }
  const auto format = valueNamed(formats, asciiLowercased(options.output.extension().string()));
  if (!format) {
    return std::unexpected(badArguments("cannot tell a picture format from \"" +
                                        options.output.string() +
                                        "\"; let the file's name end in .png, .svg or .pdf"));
  }
  RenderPlan plan{.entry = *entry, .output = options.output};
  plan.configuration.showTimestamp = options.showTimestamp;
  if (options.adapter) {
    plan.configuration.adapter =
        NetworkAdapter{.identifier = options.adapter, .display = *options.adapter};
  }
  plan.picture = {.sizePoints = widgetSize(WidgetFamily::medium),
                  .cornerRadiusPoints = widgetCornerRadius,
                  .scheme = *scheme,
                  .scale = options.scale,
                  .format = *format};
  return plan;
}

}  // namespace

std::expected<void, CommandFailure> runRender(const RenderOptions& options, const Machine& machine,
                                              const Console& console) {
  auto plan = checked(options);
  if (!plan) return std::unexpected(plan.error());
  const auto drawable = drawableAdapterEntry(plan->entry, plan->configuration, machine);
  if (!drawable) return std::unexpected(drawable.error());

  const WidgetEnvironment environment{.strings = machine.platform.strings,
                                      .widgetFamily = WidgetFamily::medium,
                                      .preferredInterfaceNames = drawable->preferredInterfaceNames,
                                      .supportsButtons = true};
  const View view = NetworkAdapterWidgetEntryView{.entry = drawable->entry}.body(environment);
  plan->picture.drawingTime = relativeDateText(machine.platform.clock.now());
  const auto picture = renderPicture(
      view, plan->picture,
      {.assetFolder = machine.assets,
       .report = [&console](std::string_view line) { console.errors << line << '\n'; }});
  if (!picture) return std::unexpected(workFailed(picture.error()));
  if (const auto written = writeFileAtomically(plan->output, *picture); !written) {
    return std::unexpected(workFailed(written.error()));
  }
  console.output << "Wrote " << std::filesystem::absolute(plan->output).string() << '\n';
  return {};
}

}  // namespace lanternfold
