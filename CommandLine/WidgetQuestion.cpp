#include "CommandLine/WidgetQuestion.h"

#include <algorithm>
#include <chrono>
#include <functional>
#include <memory>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include <CLI/CLI.hpp>

#include "CommandLine/KernelAccess.h"
#include "NetworkWidgetVexExtension/Bundle/NetworkAdapterWidget.h"
#include "NetworkWidgetVexExtension/Bundle/PanoramicNetworkStateWidget.h"
#include "NetworkWidgetVexExtension/Bundle/WlanNetworkStateWidget.h"
#include "WidgetService/WidgetFamilyName.h"
#include "Wiring/PrintableText.h"
#include "Wiring/ProgramName.h"
#include "Wiring/WidgetGraph.h"

namespace lanternfold {
namespace {

constexpr std::string_view automaticAdapter = "auto";

std::string namesOf(const std::vector<WidgetFamily>& offered) {
  std::string names;
  for (const WidgetFamily family : offered) {
    if (!names.empty()) names += " or ";
    names += widgetFamilyName(family);
  }
  return names;
}

std::expected<WidgetFamily, CommandFailure> familyOf(const WidgetQuestion& question,
                                                     const WidgetDescription& widget) {
  const auto& offered = widget.supportedFamilies;
  if (!question.family) return offered.back();
  const auto family = widgetFamilyOfName(*question.family);
  if (!family) {
    return std::unexpected(
        badArguments("unknown family " + inQuotes(*question.family) + "; use " + namesOf(offered)));
  }
  if (std::ranges::find(offered, *family) != offered.end()) return *family;
  return std::unexpected(badArguments(widget.kind + " has no " + *question.family +
                                      " family; use " + namesOf(offered)));
}

std::optional<CommandFailure> faultOfAdapter(const WidgetQuestion& question) {
  if (!question.adapter) return std::nullopt;
  if (question.kind != NetworkAdapterWidget{}.kind) {
    return badArguments("--adapter chooses what NetworkAdapterWidget shows; " + question.kind +
                        " shows what there is");
  }
  if (!question.adapter->empty()) return std::nullopt;
  return badArguments(
      "--adapter needs an interface's name; \"lanternfold-widgets interfaces\" lists them");
}

std::expected<EntryCall, CommandFailure> callOf(const WidgetQuestion& question,
                                                EntryCall::Kind entry,
                                                const std::vector<Widget>& widgets) {
  const auto widget =
      std::ranges::find(widgets, question.kind,
                        [](const Widget& each) -> const auto& { return each.description.kind; });
  if (widget == widgets.end()) {
    return std::unexpected(
        badArguments("unknown widget kind " + inQuotes(question.kind) + "; use " + widgetKinds));
  }
  const auto family = familyOf(question, widget->description);
  if (!family) return std::unexpected(family.error());
  if (auto fault = faultOfAdapter(question)) return std::unexpected(*std::move(fault));
  WidgetRequest request{.family = *family};
  request.configuration.showTimestamp = question.showTimestamp;
  if (question.adapter) {
    request.configuration.adapter =
        AdapterParameter{.identifier = question.adapter, .display = *question.adapter};
  }
  return EntryCall{.entry = entry, .kind = question.kind, .request = std::move(request)};
}

/// The widgets leave out what the kernel does not let them read. A widget that consists of it would
/// look like that of a machine without any.
std::expected<void, CommandFailure> requireTruth(const std::string& kind, const Machine& machine,
                                                 const Console& console) {
  const bool isPanoramic = kind == PanoramicNetworkStateWidget{}.kind;
  if (isPanoramic || kind == NetworkAdapterWidget{}.kind) {
    if (auto readable = requireReadableKernel(machine); !readable) return readable;
  }
  if (!isPanoramic && kind != WlanNetworkStateWidget{}.kind) return {};
  const WifiReading wifi = machine.readWifi();
  if (wifi) return {};
  const CommandFailure failure = unreadableWifi(wifi.error());
  if (!isPanoramic) return std::unexpected(failure);
  console.errors << programName << ": Wi-Fi is left out: " << failure.sentence << '\n';
  return {};
}

/// The card explains an adapter that is not there; whoever mistyped its name is told at once.
void warnOfMissingAdapter(const WidgetQuestion& question, const Machine& machine,
                          const Console& console) {
  if (!question.adapter || *question.adapter == automaticAdapter) return;
  const auto adapters = makeInterfaceResolver(machine)->interfacesPrefixed("en");
  if (std::ranges::find(adapters, *question.adapter, &BasicInterface::name) != adapters.end()) {
    return;
  }
  console.errors << programName << ": no adapter is called " << inQuotes(*question.adapter)
                 << ", and the card says so; \"" << programName
                 << " interfaces --prefix en\" lists the adapters\n";
}

std::expected<ServiceResult, CommandFailure> answerTo(const EntryCall& call,
                                                      const WidgetResponder& responder,
                                                      const Machine& machine) {
  constexpr std::chrono::seconds limit{30};
  // Shared with an answer that comes after the limit.
  struct Wait {
    std::optional<WidgetResponder::Answer> answer;
    bool isLoopRunning = false;
  };
  const auto wait = std::make_shared<Wait>();
  responder.respond(call,
                    [wait, loop = std::ref(machine.mainLoop)](WidgetResponder::Answer answer) {
                      wait->answer = std::move(answer);
                      if (wait->isLoopRunning) loop.get().stop();
                    });
  if (!wait->answer) {
    wait->isLoopRunning = true;
    machine.mainLoop.runFor(limit);
    wait->isLoopRunning = false;
  }
  const auto& answer = wait->answer;
  if (!answer) return std::unexpected(workFailed("this machine's state is not known after 30 s"));
  if (!*answer) return std::unexpected(workFailed(answer->error().message));
  return **answer;
}

}  // namespace

void addWidgetOptions(CLI::App& command, WidgetQuestion& question) {
  command.add_option("kind", question.kind, std::string("The widget: ") + widgetKinds)
      ->option_text("KIND")
      ->type_name(std::string("a widget's kind: ") + widgetKinds)
      ->required();
  command
      .add_option("--family", question.family,
                  "The widget's size: small, medium or large, as far as the widget has it; default "
                  "its largest")
      ->option_text("FAMILY")
      ->type_name("the widget's size: small, medium or large");
  command
      .add_option(
          "--adapter", question.adapter,
          "The interface that NetworkAdapterWidget shows, or auto (the default), which takes "
          "the one of the best default route")
      ->option_text("NAME")
      ->type_name("an interface's name");
  command.add_flag("--show-timestamp", question.showTimestamp, "Show the time of drawing");
}

std::expected<WidgetAnswer, CommandFailure> askWidget(const WidgetQuestion& question,
                                                      EntryCall::Kind entry,
                                                      const MonitorOptions& monitor,
                                                      const Machine& machine,
                                                      const Console& console) {
  std::vector<Widget> widgets = makeWidgets(machine, monitor);
  const auto call = callOf(question, entry, widgets);
  if (!call) return std::unexpected(call.error());
  if (entry == EntryCall::Kind::timeline) {
    if (auto truth = requireTruth(question.kind, machine, console); !truth) {
      return std::unexpected(truth.error());
    }
    warnOfMissingAdapter(question, machine, console);
  }
  const WidgetResponder responder = makeWidgetResponder(machine, std::move(widgets));
  auto result = answerTo(*call, responder, machine);
  if (!result) return std::unexpected(result.error());
  return WidgetAnswer{.family = call->request.family, .result = *std::move(result)};
}

}  // namespace lanternfold
