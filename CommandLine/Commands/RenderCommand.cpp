#include "CommandLine/Commands/RenderCommand.h"

#include <filesystem>
#include <string_view>

#include "CommandLine/AtomicFile.h"
#include "NetworkWidgetVexExtension/Views/NetworkAdapterWidgetEntryView.h"
#include "Support/RelativeDateText.h"

namespace lanternfold {

std::expected<void, CommandFailure> runRender(const RenderPlan& plan, const Machine& machine,
                                              const Console& console) {
  const auto drawable = drawableAdapterEntry(plan.entry, plan.configuration, machine);
  if (!drawable) return std::unexpected(drawable.error());

  const WidgetEnvironment environment{.strings = machine.platform.strings,
                                      .widgetFamily = WidgetFamily::medium,
                                      .preferredInterfaceNames = drawable->preferredInterfaceNames};
  const View view = NetworkAdapterWidgetEntryView{.entry = drawable->entry}.body(environment);
  PictureRequest request = plan.picture;
  request.drawingTime = relativeDateText(machine.platform.clock.now());
  const auto picture = renderPicture(
      view, request, {.assetFolder = machine.assets, .report = [&console](std::string_view line) {
                        console.errors << line << '\n';
                      }});
  if (!picture) return std::unexpected(workFailed(picture.error()));
  if (const auto written = writeFileAtomically(plan.output, *picture); !written) {
    return std::unexpected(workFailed(written.error()));
  }
  console.output << "Wrote " << std::filesystem::absolute(plan.output).string() << '\n';
  return {};
}

}  // namespace lanternfold
