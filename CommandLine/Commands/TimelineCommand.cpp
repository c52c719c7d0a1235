#include "CommandLine/Commands/TimelineCommand.h"

#include <string>
#include <variant>
#include <vector>

#include "CommandLine/WidgetRows.h"
#include "Support/FatalError.h"
#include "Wiring/DrawingLanguage.h"

namespace lanternfold {

std::expected<void, CommandFailure> runTimeline(const TimelineOptions& options,
                                                const MonitorOptions& monitor,
                                                const Machine& machine, const Console& console) {
  const auto answer = askWidget(options.question, monitor, machine, console);
  if (!answer) return std::unexpected(answer.error());
  if (options.json) {
    console.output << serviceResultJson(*answer) << '\n';
    return {};
  }
  const auto* timeline = std::get_if<Timeline<ViewEntry>>(&*answer);
  if (timeline == nullptr) fatalError("a widget answered with something else than a timeline");
  const std::string drawingTime = drawingTimeText(machine);
  for (const ViewEntry& entry : timeline->entries) {
    writeWidgetRows(plainTextRows(entry.view, drawingTime), console);
  }
  return {};
}

}  // namespace lanternfold
