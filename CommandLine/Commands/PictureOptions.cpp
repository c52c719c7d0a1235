#include "CommandLine/Commands/PictureOptions.h"

#include <array>
#include <optional>
#include <string_view>
#include <utility>

#include <CLI/CLI.hpp>

#include "CommandLine/AtomicFile.h"
#include "CommandLine/NamedValue.h"
#include "CommandLine/PlainNumber.h"
#include "Support/AsciiCase.h"
#include "Wiring/DrawingLanguage.h"
#include "Wiring/PrintableText.h"

namespace lanternfold {
namespace {

constexpr double smallestScale = 0.5;
constexpr double largestScale = 8;

constexpr std::array<NamedValue<EntryCall::Kind>, 3> entries = {
    {{"placeholder", EntryCall::Kind::placeholder},
     {"snapshot", EntryCall::Kind::snapshot},
     {"timeline", EntryCall::Kind::timeline}}};
constexpr std::array<NamedValue<PictureFormat>, 3> formats = {
    {{".png", PictureFormat::png}, {".svg", PictureFormat::svg}, {".pdf", PictureFormat::pdf}}};

std::optional<double> parseScale(const std::string& text) {
  const auto scale = plainNumber(text);
  return scale && *scale >= smallestScale && *scale <= largestScale ? scale : std::nullopt;
}

}  // namespace

CLI::Option* addPictureOptions(CLI::App& command, PictureOptions& options) {
  command.add_option("--scale", options.scale, "Pixels a point, 0.5 to 8; default 2")
      ->option_text("N")
      ->type_name(scaleValues);
  return command
      .add_option("-o,--output", options.output, "The file to write: *.png, *.svg or *.pdf")
      ->option_text("FILE")
      ->type_name("a file's name that ends in .png, .svg or .pdf");
}

std::expected<PictureChoice, CommandFailure> checkPictureOptions(const PictureOptions& options) {
  const auto scale = parseScale(options.scale);
  if (!scale) {
    return std::unexpected(badArguments(std::string("--scale takes ") + scaleValues + ", not " +
                                        inQuotes(options.scale)));
  }
  const EntryCall::Kind* const entry = valueNamed(entries, options.entry);
  if (entry == nullptr) {
    return std::unexpected(badArguments("unknown entry " + inQuotes(options.entry) +
                                        "; use placeholder, snapshot or timeline"));
  }
  const PictureFormat* const format =
      valueNamed(formats, asciiLowercased(options.output.extension().string()));
  if (format == nullptr) {
    return std::unexpected(badArguments("cannot tell a picture format from " +
                                        inQuotes(options.output.string()) +
                                        "; let the file's name end in .png, .svg or .pdf"));
  }
  return PictureChoice{
      .scale = *scale, .entry = *entry, .format = *format, .output = options.output};
}

std::expected<void, CommandFailure> writePicture(const View& view, PictureRequest request,
                                                 const std::filesystem::path& output,
                                                 const Machine& machine, const Console& console) {
  request.drawingTime = drawingTimeText(machine);
  request.direction = layoutDirection(machine.language);
  const auto picture = renderPicture(
      view, request,
      {.assetFolder = machine.assets,
       .report = [&console](std::string_view line) { console.errors << line << '\n'; },
       .language = languageTag(machine.language)});
  if (!picture) return std::unexpected(workFailed(picture.error()));
  if (const auto written = writeFileAtomically(output, *picture); !written) {
    return std::unexpected(workFailed(written.error()));
  }
  console.output << "Wrote " << printable(std::filesystem::absolute(output).string()) << '\n';
  return {};
}

}  // namespace lanternfold
