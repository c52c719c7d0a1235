#include "CommandLine/Commands/RenderPlan.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

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

constexpr std::array<NamedValue<ColourScheme>, 2> schemes = {
    {{"light", ColourScheme::light}, {"dark", ColourScheme::dark}}};
constexpr std::array<NamedValue<EntryCall::Kind>, 3> entries = {
    {{"placeholder", EntryCall::Kind::placeholder},
     {"snapshot", EntryCall::Kind::snapshot},
     {"timeline", EntryCall::Kind::timeline}}};
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

/// The sentence about the first option that is wrong, or none.
std::optional<std::string> faultOf(const RenderOptions& options) {
  if (valueNamed(schemes, options.scheme) == nullptr) {
    return "unknown scheme " + inQuotes(options.scheme) + "; use light or dark";
  }
  if (!parseScale(options.scale)) {
    return std::string("--scale takes ") + scaleValues + ", not " + inQuotes(options.scale);
  }
  if (valueNamed(entries, options.entry) == nullptr) {
    return "unknown entry " + inQuotes(options.entry) + "; use placeholder, snapshot or timeline";
  }
  return std::nullopt;
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
  auto question = widgetQuestion(options.widget, *valueNamed(entries, options.entry));
  if (!question) return std::unexpected(question.error());
  const Size size = widgetSize(question->request.family);
  return RenderPlan{.question = *std::move(question),
                    .picture = {.sizePoints = size,
                                .cornerRadiusPoints = widgetCornerRadius,
                                .scheme = *valueNamed(schemes, options.scheme),
                                .scale = *parseScale(options.scale),
                                .format = *format},
                    .output = options.output};
}

}  // namespace lanternfold
