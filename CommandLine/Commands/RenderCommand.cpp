#include "CommandLine/Commands/RenderCommand.h"

#include <filesystem>
#include <string_view>
#include <variant>

#include "CommandLine/AtomicFile.h"
#include "CommandLine/WidgetQuestion.h"
#include "Support/FatalError.h"
#include "Wiring/DrawingLanguage.h"
#include "Wiring/PrintableText.h"

namespace lanternfold {
namespace {

const View& viewOf(const ServiceResult& result) {
  if (const auto* entry = std::get_if<ViewEntry>(&result)) return entry->view;
  const auto* timeline = std::get_if<Timeline<ViewEntry>>(&result);
  if (timeline == nullptr || timeline->entries.empty()) {
    fatalError("a widget answered with neither an entry nor a timeline");
  }
  return timeline->entries.front().view;
}

}  // namespace

std::expected<void, CommandFailure> runRender(const RenderPlan& plan, const MonitorOptions& monitor,
                                              const Machine& machine, const Console& console) {
  const auto answer = askWidget(plan.question, monitor, machine, console);
  if (!answer) return std::unexpected(answer.error());
  PictureRequest request = plan.picture;
  request.drawingTime = drawingTimeText(machine);
  const auto picture = renderPicture(
      viewOf(*answer), request,
      {.assetFolder = machine.assets,
       .report = [&console](std::string_view line) { console.errors << line << '\n'; }});
  if (!picture) return std::unexpected(workFailed(picture.error()));
  if (const auto written = writeFileAtomically(plan.output, *picture); !written) {
    return std::unexpected(workFailed(written.error()));
  }
  console.output << "Wrote " << printable(std::filesystem::absolute(plan.output).string()) << '\n';
  return {};
}

}  // namespace lanternfold
