#include "CommandLine/DesktopCommandLine.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include <CLI/CLI.hpp>

#include "CommandLine/Commands/CtlCommand.h"
#include "CommandLine/Commands/ShowCommand.h"
#include "Wiring/RefreshInterval.h"

namespace lanternfold {
namespace {

CommandChoice chooseShow(const ShowOptions& options, const CommonOptions& common) {
  const auto choice = checkCommonOptions(common);
  if (!choice) return std::unexpected(choice.error());
  auto plan = planShow(options, common);
  if (!plan) return std::unexpected(plan.error());
  return chosenCommand(*choice, /*json=*/false,
                       [plan = *std::move(plan)](const Machine& machine, const Console&) {
                         return runShow(plan, machine);
                       });
}

/// What a command below `ctl` takes besides the common options.
struct CtlOptions {
  WidgetOptions widget;
  std::optional<std::string> id;
  bool json = false;
};

using CtlRun = std::function<std::expected<void, CommandFailure>(const CtlOptions&, const Machine&,
                                                                 const Console&)>;

struct CtlCommand {
  const char* name;
  const char* help;
  std::function<void(CLI::App&, CtlOptions&)> declare;
  CtlRun run;
};

CommandChoice chooseCtl(const CtlOptions& options, const CommonOptions& common, CtlRun run) {
  const auto choice = checkCommonOptions(common);
  if (!choice) return std::unexpected(choice.error());
  if (options.id) {
    if (const auto checked = checkWidgetId(*options.id); !checked) {
      return std::unexpected(checked.error());
    }
  }
  return chosenCommand(
      *choice, options.json,
      [options, run = std::move(run)](const Machine& machine, const Console& console) {
        return run(options, machine, console);
      });
}

void addCtlCommand(CLI::App& ctl, const CtlCommand& wanted, CommandChoice& choice) {
  auto options = std::make_shared<CtlOptions>();
  auto common = std::make_shared<CommonOptions>();
  CLI::App* command = ctl.add_subcommand(wanted.name, wanted.help);
  wanted.declare(*command, *options);
  addCommonOptions(*command, *common);
  command->callback(
      [options, common, run = wanted.run, &choice] { choice = chooseCtl(*options, *common, run); });
}

CLI::Option* addId(CLI::App& command, CtlOptions& options, const char* help) {
  return command.add_option("id", options.id, help)
      ->option_text("ID")
      ->type_name("a widget's id, as \"ctl list\" shows it");
}

/// Beside the others, its widget is checked before anybody is asked.
void addCtlAdd(CLI::App& ctl, CommandChoice& choice) {
  auto widget = std::make_shared<WidgetOptions>();
  auto common = std::make_shared<CommonOptions>();
  CLI::App* command = ctl.add_subcommand("add", "Add a widget, and show its id");
  addWidgetChoice(*command, *widget);
  addCommonOptions(*command, *common);
  command->callback([widget, common, &choice] {
    auto checked = checkNewWidget(*widget);
    if (!checked) {
      choice = std::unexpected(checked.error());
      return;
    }
    choice = chooseCtl({}, *common,
                       [added = *std::move(checked)](const CtlOptions&, const Machine& machine,
                                                     const Console& console) {
                         return runCtlAdd(added, machine, console);
                       });
  });
}

}  // namespace

void addShow(CLI::App& app, CommandChoice& choice) {
  auto options = std::make_shared<ShowOptions>();
  auto common = std::make_shared<CommonOptions>();
  CLI::App* command = app.add_subcommand("show", "Show the widgets on the desktop");
  command->add_flag("--detach", options->detach,
                    "Return when the widgets are shown, or after ten seconds, instead of when they "
                    "are put away");
  command
      ->add_option("--refresh-interval", options->refreshInterval,
                   "How many seconds a widget stays as it is when nothing happens, 10 to 86400; "
                   "default 300")
      ->option_text("SECONDS")
      ->type_name(refreshIntervalValues);
  addCommonOptions(*command, *common);
  command->callback([options, common, &choice] { choice = chooseShow(*options, *common); });
}

void addCtl(CLI::App& app, CommandChoice& choice) {
  CLI::App* ctl = app.add_subcommand("ctl", "Arrange the widgets that are shown on the desktop");
  ctl->require_subcommand(1);
  addCtlCommand(
      *ctl,
      {.name = "list",
       .help = "List the widgets and their remembered places",
       .declare =
           [](CLI::App& command, CtlOptions& options) {
             command.add_flag("--json", options.json, "Write a JSON array of them");
           },
       .run = [](const CtlOptions& options, const Machine& machine,
                 const Console& console) { return runCtlList(options.json, machine, console); }},
      choice);
  addCtlAdd(*ctl, choice);
  addCtlCommand(
      *ctl,
      {.name = "remove",
       .help = "Remove a widget",
       .declare =
           [](CLI::App& command, CtlOptions& options) {
             addId(command, options, "The widget to remove")->required();
           },
       .run = [](const CtlOptions& options, const Machine& machine,
                 const Console&) { return runCtlRemove(options.id.value_or(""), machine); }},
      choice);
  addCtlCommand(*ctl,
                {.name = "reload",
                 .help = "Have a widget, or all of them, ask anew what to show",
                 .declare =
                     [](CLI::App& command, CtlOptions& options) {
                       addId(command, options, "The widget to reload; all without it");
                     },
                 .run = [](const CtlOptions& options, const Machine& machine,
                           const Console&) { return runCtlReload(options.id, machine); }},
                choice);
  addCtlCommand(*ctl,
                {.name = "quit",
                 .help = "Put the widgets away until they are shown again",
                 .declare = [](CLI::App&, CtlOptions&) {},
                 .run = [](const CtlOptions&, const Machine& machine,
                           const Console&) { return runCtlQuit(machine); }},
                choice);
}

}  // namespace lanternfold
