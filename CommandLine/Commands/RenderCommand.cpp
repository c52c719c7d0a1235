#include "CommandLine/Commands/RenderCommand.h"

#include "CommandLine/Commands/PictureOptions.h"
#include "CommandLine/WidgetAnswers.h"
#include "CommandLine/WidgetQuestion.h"

namespace lanternfold {

std::expected<void, CommandFailure> runRender(const RenderPlan& plan, const MonitorOptions& monitor,
                                              const Machine& machine, const Console& console) {
  const auto answer = askWidget(plan.question, monitor, machine, console);
  if (!answer) return std::unexpected(answer.error());
  return writePicture(shownView(*answer), plan.picture, plan.output, machine, console);
}

}  // namespace lanternfold
