#include "CommandLine/Commands/RenderPlan.h"

#include <array>
#include <utility>

#include "CommandLine/NamedValue.h"
#include "WidgetService/WidgetFamily.h"
#include "Wiring/PrintableText.h"

namespace lanternfold {
namespace {

constexpr std::array<NamedValue<ColourScheme>, 2> schemes = {
    {{"light", ColourScheme::light}, {"dark", ColourScheme::dark}}};

}  // namespace

std::expected<RenderPlan, CommandFailure> planRender(const RenderOptions& options) {
  const ColourScheme* const scheme = valueNamed(schemes, options.scheme);
  if (scheme == nullptr) {
    return std::unexpected(
        badArguments("unknown scheme " + inQuotes(options.scheme) + "; use light or dark"));
  }
  const auto picture = checkPictureOptions(options.picture);
  if (!picture) return std::unexpected(picture.error());
  auto question = widgetQuestion(options.widget, picture->entry);
  if (!question) return std::unexpected(question.error());
  const Size size = widgetSize(question->request.family);
  return RenderPlan{.question = *std::move(question),
                    .picture = {.sizePoints = size,
                                .cornerRadiusPoints = widgetCornerRadius,
                                .scheme = *scheme,
                                .scale = picture->scale,
                                .format = picture->format,
                                .title = options.widget.kind},
                    .output = picture->output};
}

}  // namespace lanternfold
