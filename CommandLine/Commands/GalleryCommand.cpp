#include "CommandLine/Commands/GalleryCommand.h"

#include <cstddef>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "CommandLine/Gallery/GallerySheet.h"
#include "CommandLine/KernelAccess.h"
#include "CommandLine/WidgetAnswers.h"
#include "NetworkWidgetVexExtension/Bundle/WlanNetworkStateWidget.h"
#include "Wiring/FileDescriptorLimit.h"
#include "Wiring/WidgetGraph.h"

namespace lanternfold {
namespace {

/// More than nine widgets have open at once while services keep them waiting, which is about
/// thirty.
constexpr int descriptorsOfAllWidgets = 64;

/// A card of the sheet, and what its widget is asked for.
struct CardQuestion {
  std::string displayName;
  EntryCall call;
};

std::vector<CardQuestion> questionsFor(const std::vector<Widget>& widgets, EntryCall::Kind entry) {
  const bool isSample = entry != EntryCall::Kind::timeline;
  std::vector<CardQuestion> questions;
  for (const Widget& widget : widgets) {
    for (const WidgetFamily family : widget.description.supportedFamilies) {
      questions.push_back({.displayName = widget.description.displayName,
                           .call = {.entry = entry,
                                    .kind = widget.description.kind,
                                    .request = {.family = family,
                                                .configuration = {},
                                                .context = {.isPreview = isSample}}}});
    }
  }
  return questions;
}

/// A card of nothing would look like that of a machine without Wi-Fi.
std::expected<void, CommandFailure> keepTruth(std::vector<CardQuestion>& questions,
                                              const Machine& machine, const Console& console) {
  if (auto readable = requireReadableKernel(machine); !readable) return readable;
  const WifiReading wifi = machine.readWifi();
  if (wifi) return {};
  sayWifiIsLeftOut(unreadableWifi(wifi.error()), console);
  std::erase_if(questions, [](const CardQuestion& question) {
    return question.call.kind == WlanNetworkStateWidget{}.kind;
  });
  return {};
}

/// The first widget answers alone and leaves in the cache what public services have told; the
/// others, side by side, need not ask all of them again.
std::expected<std::vector<ServiceResult>, CommandFailure> answersOf(
    std::span<const EntryCall> calls, const WidgetResponder& responder, const Machine& machine) {
  auto answers = widgetAnswers(calls.first(1), responder, machine);
  if (!answers) return answers;
  auto others = widgetAnswers(calls.subspan(1), responder, machine);
  if (!others) return others;
  answers->insert(answers->end(), others->begin(), others->end());
  return answers;
}

}  // namespace

PictureOptions defaultGalleryOptions() {
  return {.entry = "placeholder", .output = "lanternfold-gallery.png"};
}

std::expected<void, CommandFailure> runGallery(const PictureChoice& choice,
                                               const MonitorOptions& monitor,
                                               const Machine& machine, const Console& console) {
  std::vector<Widget> widgets = makeWidgets(machine, monitor);
  std::vector<CardQuestion> questions = questionsFor(widgets, choice.entry);
  if (choice.entry == EntryCall::Kind::timeline) {
    requireFreeDescriptors(descriptorsOfAllWidgets);
    if (auto truth = keepTruth(questions, machine, console); !truth) return truth;
  }
  std::vector<EntryCall> calls;
  for (const CardQuestion& question : questions) calls.push_back(question.call);
  const auto answers = answersOf(calls, makeWidgetResponder(machine, std::move(widgets)), machine);
  if (!answers) return std::unexpected(answers.error());
  std::vector<GalleryCard> cards;
  for (std::size_t index = 0; index < questions.size(); ++index) {
    cards.push_back({.displayName = questions[index].displayName,
                     .family = questions[index].call.request.family,
                     .view = shownView((*answers)[index])});
  }
  const GallerySheet sheet = makeGallerySheet(cards, machine.mainBundleStrings);
  return writePicture(sheet.view,
                      {.sizePoints = sheet.sizePoints,
                       .scale = choice.scale,
                       .format = choice.format,
                       .title = gallerySheetTitle},
                      choice.output, machine, console);
}

}  // namespace lanternfold
