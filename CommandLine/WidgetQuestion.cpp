#include "CommandLine/WidgetQuestion.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "CommandLine/KernelAccess.h"
#include "CommandLine/WidgetAnswers.h"
#include "NetworkWidgetVexExtension/Bundle/NetworkAdapterWidget.h"
#include "NetworkWidgetVexExtension/Bundle/PanoramicNetworkStateWidget.h"
#include "NetworkWidgetVexExtension/Bundle/WidgetKinds.h"
#include "NetworkWidgetVexExtension/Bundle/WlanNetworkStateWidget.h"
#include "NetworkWidgetVexExtension/Intents/NetworkAdapter.h"
#include "PlatformLinux/Netlink/InterfaceName.h"
#include "WidgetService/WidgetFamilyName.h"
#include "Wiring/PrintableText.h"
#include "Wiring/ProgramName.h"
#include "Wiring/WidgetGraph.h"

namespace lanternfold {
namespace {

std::string namesOf(const std::vector<WidgetKind>& kinds) {
  std::string names;
  for (std::size_t index = 0; index < kinds.size(); ++index) {
    if (index > 0) names += index + 1 == kinds.size() ? " or " : ", ";
    names += kinds[index].kind;
  }
  return names;
}

std::expected<WidgetFamily, CommandFailure> familyOf(const WidgetOptions& options,
                                                     const WidgetKind& widget) {
  if (!options.family) return widget.families.back();
  const auto family = widgetFamilyOfName(*options.family);
  if (!family) {
    return std::unexpected(badArguments("unknown family " + inQuotes(*options.family) + "; use " +
                                        widgetFamilyNames(widget.families)));
  }
  if (std::ranges::find(widget.families, *family) != widget.families.end()) return *family;
  return std::unexpected(badArguments(widget.kind + " has no " + *options.family + " family; use " +
                                      widgetFamilyNames(widget.families)));
}

std::optional<CommandFailure> faultOfAdapter(const WidgetOptions& options) {
  if (!options.adapter) return std::nullopt;
  if (options.kind != NetworkAdapterWidget{}.kind) {
    return badArguments("--adapter chooses what NetworkAdapterWidget shows; " + options.kind +
                        " shows what there is");
  }
  // The word for the widget's own choice could be an interface's name, too.
  if (isTrustworthyInterfaceName(*options.adapter)) return std::nullopt;
  const std::string given =
      options.adapter->empty() ? "" : ", and none can be called " + inQuotes(*options.adapter);
  return badArguments("--adapter needs an interface's name" + given +
                      "; \"lanternfold-widgets interfaces\" lists them");
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
  sayWifiIsLeftOut(failure, console);
  return {};
}

/// The card explains an adapter that is not there; whoever mistyped its name is told at once.
void warnOfMissingAdapter(const EntryCall& question, const Machine& machine,
                          const Console& console) {
  const auto& adapter = question.request.configuration.adapter;
  if (!adapter || adapter->identifier == automaticAdapterIdentifier) return;
  const std::string& name = *adapter->identifier;
  const auto adapters = makeInterfaceResolver(machine)->interfacesPrefixed("en");
  if (std::ranges::find(adapters, name, &BasicInterface::name) != adapters.end()) return;
  console.errors << programName << ": no adapter is called " << inQuotes(name)
                 << ", and the card says so; \"" << programName
                 << " interfaces --prefix en\" lists the adapters\n";
}

}  // namespace

void addWidgetChoice(CLI::App& command, WidgetOptions& options) {
  const std::string kinds = namesOf(widgetKinds());
  command.add_option("kind", options.kind, "The widget: " + kinds)
      ->option_text("KIND")
      ->type_name("a widget's kind: " + kinds)
      ->required();
  command
      .add_option("--family", options.family,
                  "The widget's size: small, medium or large, as far as the widget has it; default "
                  "its largest")
      ->option_text("FAMILY")
      ->type_name("the widget's size: small, medium or large");
  command
      .add_option(
          "--adapter", options.adapter,
          "The interface that NetworkAdapterWidget shows, or auto (the default), which takes "
          "the one of the best default route")
      ->option_text("NAME")
      ->type_name("an interface's name");
}

void addWidgetOptions(CLI::App& command, WidgetOptions& options) {
  addWidgetChoice(command, options);
  command.add_flag("--show-timestamp", options.showTimestamp, "Show the time of drawing");
}

std::expected<EntryCall, CommandFailure> widgetQuestion(const WidgetOptions& options,
                                                        EntryCall::Kind entry) {
  const std::vector<WidgetKind> kinds = widgetKinds();
  const auto widget = std::ranges::find(kinds, options.kind, &WidgetKind::kind);
  if (widget == kinds.end()) {
    return std::unexpected(
        badArguments("unknown widget kind " + inQuotes(options.kind) + "; use " + namesOf(kinds)));
  }
  const auto family = familyOf(options, *widget);
  if (!family) return std::unexpected(family.error());
  if (auto fault = faultOfAdapter(options)) return std::unexpected(*std::move(fault));
  WidgetRequest request{.family = *family};
  request.configuration.showTimestamp = options.showTimestamp;
  if (options.adapter) {
    request.configuration.adapter =
        AdapterParameter{.identifier = options.adapter, .display = *options.adapter};
  }
  return EntryCall{.entry = entry, .kind = options.kind, .request = std::move(request)};
}

std::expected<ServiceResult, CommandFailure> askWidget(const EntryCall& question,
                                                       const MonitorOptions& monitor,
                                                       const Machine& machine,
                                                       const Console& console) {
  if (question.entry == EntryCall::Kind::timeline) {
    if (auto truth = requireTruth(question.kind, machine, console); !truth) {
      return std::unexpected(truth.error());
    }
    warnOfMissingAdapter(question, machine, console);
  }
  auto answers = widgetAnswers(
      {&question, 1}, makeWidgetResponder(machine, makeWidgets(machine, monitor)), machine);
  if (!answers) return std::unexpected(answers.error());
  return std::move(answers->front());
}

}  // namespace lanternfold
