#include "CommandLine/Commands/RenderCommand.h"

#include <filesystem>
#include <string_view>
#include <utility>
#include <variant>

#include "CommandLine/AdapterEntry.h"
#include "CommandLine/AtomicFile.h"
#include "CommandLine/StateEntry.h"
#include "NetworkWidgetVexExtension/Views/AdapterChoice.h"
#include "NetworkWidgetVexExtension/Views/NetworkAdapterWidgetEntryView.h"
#include "NetworkWidgetVexExtension/Views/NetworkStateWidgetEntryView.h"
#include "Support/RelativeDateText.h"
#include "Wiring/PrintableText.h"
#include "Wiring/ProgramName.h"

namespace lanternfold {
namespace {

/// The picture explains an adapter that is not there; whoever mistyped its name is told at once.
void warnOfMissingAdapter(const NetworkAdapterEntry& entry, const WidgetEnvironment& environment,
                          const Console& console) {
  const AdapterChoice choice = chooseAdapter(entry.configuration, entry.networkState.others,
                                             environment.preferredInterfaceNames);
  const auto* missing = std::get_if<MissingAdapter>(&choice);
  if (missing == nullptr) return;
  console.errors << programName << ": no adapter is called " << inQuotes(missing->name)
                 << ", and the picture says so; \"" << programName
                 << " interfaces --prefix en\" lists the adapters\n";
}

std::expected<View, CommandFailure> viewOf(const AdapterWidgetPlan& widget, const RenderPlan& plan,
                                           const Machine& machine, const Console& console) {
  const auto drawable = drawableAdapterEntry(plan.entry, widget.configuration, machine);
  if (!drawable) return std::unexpected(drawable.error());
  const WidgetEnvironment environment{.strings = machine.platform.strings,
                                      .widgetFamily = plan.family,
                                      .preferredInterfaceNames = drawable->preferredInterfaceNames};
  warnOfMissingAdapter(drawable->entry, environment, console);
  return NetworkAdapterWidgetEntryView{.entry = drawable->entry}.body(environment);
}

std::expected<View, CommandFailure> viewOf(const StateWidgetPlan& widget, const RenderPlan& plan,
                                           const MonitorOptions& monitor, const Machine& machine) {
  auto entry = drawableStateEntry({.source = plan.entry,
                                   .categories = widget.categories,
                                   .configuration = widget.configuration,
                                   .monitor = monitor},
                                  machine);
  if (!entry) return std::unexpected(entry.error());
  return NetworkStateWidgetEntryView{.entry = *std::move(entry)}.body(
      {.strings = machine.platform.strings,
       .widgetFamily = plan.family,
       .shownCategories = widget.categories});
}

std::expected<View, CommandFailure> viewOf(const RenderPlan& plan, const MonitorOptions& monitor,
                                           const Machine& machine, const Console& console) {
  if (const auto* widget = std::get_if<AdapterWidgetPlan>(&plan.widget)) {
    return viewOf(*widget, plan, machine, console);
  }
  return viewOf(std::get<StateWidgetPlan>(plan.widget), plan, monitor, machine);
}

}  // namespace

std::expected<void, CommandFailure> runRender(const RenderPlan& plan, const MonitorOptions& monitor,
                                              const Machine& machine, const Console& console) {
  const auto view = viewOf(plan, monitor, machine, console);
  if (!view) return std::unexpected(view.error());
  PictureRequest request = plan.picture;
  request.drawingTime = relativeDateText(machine.platform.clock.now());
  const auto picture = renderPicture(
      *view, request, {.assetFolder = machine.assets, .report = [&console](std::string_view line) {
                         console.errors << line << '\n';
                       }});
  if (!picture) return std::unexpected(workFailed(picture.error()));
  if (const auto written = writeFileAtomically(plan.output, *picture); !written) {
    return std::unexpected(workFailed(written.error()));
  }
  console.output << "Wrote " << printable(std::filesystem::absolute(plan.output).string()) << '\n';
  return {};
}

}  // namespace lanternfold
