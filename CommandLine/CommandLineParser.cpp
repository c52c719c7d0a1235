#include "CommandLine/CommandLineParser.h"

#include <memory>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "CommandLine/CommandChoice.h"
#include "CommandLine/Commands/EchoServiceCommand.h"
#include "CommandLine/Commands/GalleryCommand.h"
#include "CommandLine/Commands/InterfacesCommand.h"
#include "CommandLine/Commands/LocationCommand.h"
#include "CommandLine/Commands/PictureOptions.h"
#include "CommandLine/Commands/RecordCommand.h"
#include "CommandLine/Commands/RenderCommand.h"
#include "CommandLine/Commands/StateCommand.h"
#include "CommandLine/Commands/TimelineCommand.h"
#include "CommandLine/Commands/WifiCommand.h"
#include "CommandLine/DesktopCommandLine.h"
#include "CommandLine/NetCommandLine.h"
#include "Wiring/ArgumentParsing.h"
#include "Wiring/CommonOptions.h"
#include "Wiring/ProgramName.h"

namespace lanternfold {
namespace {

constexpr const char* footer =
    "Exit status: 0 done; 1 the work failed; 2 the command line was not understood.\n"
    "Failures are one line on standard error. NO_COLOR switches colours off.\n";

CommandChoice chooseInterfaces(InterfacesOptions options, std::string_view excluding,
                               const CommonOptions& common) {
  const auto choice = checkCommonOptions(common);
  if (!choice) return std::unexpected(choice.error());
  options.excluding = parseExcludedNames(excluding);
  return chosenCommand(*choice, options.json,
                       [options](const Machine& machine, const Console& console) {
                         return runInterfaces(options, machine, console);
                       });
}

void addInterfaces(CLI::App& app, CommandChoice& choice) {
  auto options = std::make_shared<InterfacesOptions>();
  auto excluding = std::make_shared<std::string>();
  auto common = std::make_shared<CommonOptions>();
  CLI::App* command = app.add_subcommand("interfaces", "List this machine's network interfaces");
  command
      ->add_option("--prefix", options->prefix,
                   "Only interfaces whose name begins with PREFIX; \"en\" takes every network "
                   "adapter of this machine, however the kernel calls it (bridges, tunnels and "
                   "VLANs are none)")
      ->option_text("PREFIX")
      ->type_name("the beginning of interfaces' names");
  command->add_option("--excluding", *excluding, "Leave these interfaces out")
      ->option_text("NAME,NAME")
      ->type_name("names of interfaces, separated by commas");
  command->add_flag("--json", options->json, "Write a JSON array of the interface records");
  addCommonOptions(*command, *common);
  command->callback([options, excluding, common, &choice] {
    choice = chooseInterfaces(*options, *excluding, *common);
  });
}

CommandChoice chooseState(StateOptions options, const std::optional<std::string>& chosenCategories,
                          const CommonOptions& common) {
  const auto choice = checkCommonOptions(common);
  if (!choice) return std::unexpected(choice.error());
  if (chosenCategories) {
    const auto categories = parseCategories(*chosenCategories);
    if (!categories) return std::unexpected(categories.error());
    options.categories = *categories;
    options.isWifiOptional = false;
  }
  options.monitor = choice->monitor;
  return chosenCommand(*choice, options.json,
                       [options](const Machine& machine, const Console& console) {
                         return runState(options, machine, console);
                       });
}

void addState(CLI::App& app, CommandChoice& choice) {
  auto options = std::make_shared<StateOptions>();
  auto categories = std::make_shared<std::optional<std::string>>();
  auto common = std::make_shared<CommonOptions>();
  CLI::App* command = app.add_subcommand("state", "Show the state of this machine's network");
  command
      ->add_option("--categories", *categories,
                   "What to resolve: internet (what others see of this machine), wlan (Wi-Fi), "
                   "other (the other network adapters), cellular; default wlan,other")
      ->option_text("NAME,NAME")
      ->type_name("internet, wlan, cellular and other, separated by commas");
  command->add_flag(
      "--json", options->json,
      "Write {\"complete\":…,\"state\":{…},\"wifi\":{…}}; with --watch one object a line");
  command->add_flag("--watch", options->watch,
                    "Report again at every change of a link, an address, a default route or the "
                    "Wi-Fi, until interrupted");
  addCommonOptions(*command, *common);
  command->callback([options, categories, common, &choice] {
    choice = chooseState(*options, *categories, *common);
  });
}

CommandChoice chooseRecord(RecordOptions options, const std::optional<std::string>& interval,
                           const CommonOptions& common) {
  const auto choice = checkCommonOptions(common);
  if (!choice) return std::unexpected(choice.error());
  if (interval) {
    const auto parsed = parseInterval(*interval);
    if (!parsed) return std::unexpected(parsed.error());
    options.interval = *parsed;
  }
  if (auto checked = checkRecordOptions(options); !checked) return std::unexpected(checked.error());
  options.appGroupId = choice->monitor.appGroupId;
  return chosenCommand(*choice, options.json,
                       [options](const Machine& machine, const Console& console) {
                         return runRecord(options, machine, console);
                       });
}

void addRecord(CLI::App& app, CommandChoice& choice) {
  auto options = std::make_shared<RecordOptions>();
  auto interval = std::make_shared<std::optional<std::string>>();
  auto common = std::make_shared<CommonOptions>();
  CLI::App* command = app.add_subcommand("record", "Record this machine's traffic");
  command->add_flag("--once", options->once, "Take one sample and show every counter");
  command->add_flag("--json", options->json,
                    "Write an object a line for every sample; with --once one object of counters "
                    "by interface");
  command
      ->add_option("--interval", *interval,
                   "Seconds between the samples to begin with, 1 to 86400; default 120. From the "
                   "first change of the traffic's class on: 120 when it is idle, 60 when low, 30 "
                   "when high, 15 when very high")
      ->option_text("SECONDS")
      ->type_name(intervalValues);
  addCommonOptions(*command, *common);
  command->callback([options, interval, common, &choice] {
    choice = chooseRecord(*options, *interval, *common);
  });
}

CommandChoice chooseRender(const RenderOptions& options, const CommonOptions& common) {
  const auto choice = checkCommonOptions(common);
  if (!choice) return std::unexpected(choice.error());
  auto plan = planRender(options);
  if (!plan) return std::unexpected(plan.error());
  return chosenCommand(*choice, /*json=*/false,
                       [plan = *std::move(plan), monitor = choice->monitor](
                           const Machine& machine, const Console& console) {
                         return runRender(plan, monitor, machine, console);
                       });
}

void addRender(CLI::App& app, CommandChoice& choice) {
  auto options = std::make_shared<RenderOptions>();
  auto common = std::make_shared<CommonOptions>();
  CLI::App* command = app.add_subcommand("render", "Draw a widget into a PNG, SVG or PDF file");
  addWidgetOptions(*command, options->widget);
  command->add_option("--scheme", options->scheme, "light (the default) or dark")
      ->option_text("SCHEME")
      ->type_name("light or dark");
  command
      ->add_option("--entry", options->picture.entry,
                   "timeline (this machine, the default), or samples: snapshot, which keeps "
                   "--adapter and --show-timestamp, and placeholder, which does not")
      ->option_text("ENTRY")
      ->type_name("placeholder, snapshot or timeline");
  addPictureOptions(*command, options->picture)->required();
  addCommonOptions(*command, *common);
  command->callback([options, common, &choice] { choice = chooseRender(*options, *common); });
}

CommandChoice chooseGallery(const PictureOptions& options, const CommonOptions& common) {
  const auto choice = checkCommonOptions(common);
  if (!choice) return std::unexpected(choice.error());
  auto picture = checkPictureOptions(options);
  if (!picture) return std::unexpected(picture.error());
  ChosenCommand chosen = chosenCommand(*choice, /*json=*/false,
                                       [picture = *std::move(picture), monitor = choice->monitor](
                                           const Machine& machine, const Console& console) {
                                         return runGallery(picture, monitor, machine, console);
                                       });
  // All its widgets meet the same faults.
  chosen.machine.repeatedDiagnostics = RepeatedDiagnostics::dropped;
  return chosen;
}

void addGallery(CLI::App& app, CommandChoice& choice) {
  auto options = std::make_shared<PictureOptions>(defaultGalleryOptions());
  auto common = std::make_shared<CommonOptions>();
  CLI::App* command = app.add_subcommand(
      "gallery", "Draw every widget in every size, light and dark, into one PNG, SVG or PDF file");
  command
      ->add_option("--entry", options->entry,
                   "placeholder (the default) or snapshot, which are samples, or timeline: this "
                   "machine")
      ->option_text("ENTRY")
      ->type_name("placeholder, snapshot or timeline");
  addPictureOptions(*command, *options)
      ->description("The file to write: *.png, *.svg or *.pdf; default " +
                    options->output.string());
  addCommonOptions(*command, *common);
  command->callback([options, common, &choice] { choice = chooseGallery(*options, *common); });
}

CommandChoice chooseTimeline(const WidgetOptions& widget, bool json, const CommonOptions& common) {
  const auto choice = checkCommonOptions(common);
  if (!choice) return std::unexpected(choice.error());
  auto question = widgetQuestion(widget, EntryCall::Kind::timeline);
  if (!question) return std::unexpected(question.error());
  const TimelineOptions options{.question = *std::move(question), .json = json};
  ChosenCommand command = chosenCommand(
      *choice, options.json,
      [options, monitor = choice->monitor](const Machine& machine, const Console& console) {
        return runTimeline(options, monitor, machine, console);
      });
  // A view is for somebody to look at, also when it is handed on as JSON.
  command.machine.texts = TextLanguage::users;
  return command;
}

void addTimeline(CLI::App& app, CommandChoice& choice) {
  auto widget = std::make_shared<WidgetOptions>();
  auto json = std::make_shared<bool>(false);
  auto common = std::make_shared<CommonOptions>();
  CLI::App* command =
      app.add_subcommand("timeline", "Ask a widget for this machine's timeline, as its host does");
  addWidgetOptions(*command, *widget);
  command->add_flag("--json", *json,
                    "Write {\"entries\":[{\"date\":…,\"view\":{…}}],\"policy\":…}, as the "
                    "extension answers it");
  addCommonOptions(*command, *common);
  command->callback(
      [widget, json, common, &choice] { choice = chooseTimeline(*widget, *json, *common); });
}

CommandChoice chooseEchoService(const EchoServiceOptions& options, const CommonOptions& common) {
  const auto choice = checkCommonOptions(common);
  if (!choice) return std::unexpected(choice.error());
  auto plan = planEchoService(options);
  if (!plan) return std::unexpected(plan.error());
  return chosenCommand(*choice, /*json=*/false,
                       [plan = *std::move(plan)](const Machine& machine, const Console& console) {
                         return runEchoService(plan, machine, console);
                       });
}

void addEchoService(CLI::App& app, CommandChoice& choice) {
  auto options = std::make_shared<EchoServiceOptions>();
  auto common = std::make_shared<CommonOptions>();
  CLI::App* command =
      app.add_subcommand("echo-service", "Tell whoever asks over HTTP his own address");
  command
      ->add_option(
          "--listen", options->listen,
          "Where to listen, as 192.0.2.1:8080 or [2001:db8::1]:8080; 0.0.0.0 and [::] take "
          "every address of their family, the port 0 one that is free. May be repeated")
      ->option_text("ADDR:PORT")
      ->type_name(listenValues)
      ->allow_extra_args(false)
      ->required();
  command
      ->add_option("--geolocation-table", options->geolocationTable,
                   "JSON: which provider and country a network belongs to; without it nothing is "
                   "known of any")
      ->option_text("FILE")
      ->type_name("a file's name");
  command
      ->add_option("--trust", options->trust,
                   "An address or a network of reverse proxies whose X-Forwarded-For is believed. "
                   "May be repeated")
      ->option_text("ADDRESS")
      ->type_name("an address or a network")
      ->allow_extra_args(false);
  command
      ->add_option("--connections", options->connections,
                   "How many to serve at once, 1 to 10000; default 512")
      ->option_text("N")
      ->type_name(connectionsValues);
  addCommonOptions(*command, *common);
  command->callback([options, common, &choice] { choice = chooseEchoService(*options, *common); });
}

CommandChoice chooseLocation(const std::string& action, bool json, const CommonOptions& common) {
  const auto choice = checkCommonOptions(common);
  if (!choice) return std::unexpected(choice.error());
  const auto options = checkLocationOptions(action, json);
  if (!options) return std::unexpected(options.error());
  return chosenCommand(*choice, json,
                       [options = *options](const Machine& machine, const Console& console) {
                         return runLocation(options, machine, console);
                       });
}

void addLocation(CLI::App& app, CommandChoice& choice) {
  auto action = std::make_shared<std::string>();
  auto json = std::make_shared<bool>(false);
  auto common = std::make_shared<CommonOptions>();
  CLI::App* command = app.add_subcommand(
      "location", "Show or decide whether the names of Wi-Fi networks are shown");
  command
      ->add_option(
          "action", *action,
          "status shows what was decided; allow shows the names always, allow-in-use while "
          "they are in use, deny never; reset takes the decision back. Inside a Flatpak sandbox "
          "allow and allow-in-use have the system ask you, and its answer counts as in use; deny "
          "and reset withhold the names whatever the system allows")
      ->option_text("ACTION")
      ->type_name(locationActions)
      ->required();
  command->add_flag("--json", *json, "With status: write {\"status\":…,\"rawValue\":…}");
  addCommonOptions(*command, *common);
  command->callback(
      [action, json, common, &choice] { choice = chooseLocation(*action, *json, *common); });
}

CommandChoice chooseWifi(const WifiOptions& options, const CommonOptions& common) {
  const auto choice = checkCommonOptions(common);
  if (!choice) return std::unexpected(choice.error());
  return chosenCommand(*choice, options.json,
                       [options](const Machine& machine, const Console& console) {
                         return runWifi(options, machine, console);
                       });
}

void addWifi(CLI::App& app, CommandChoice& choice) {
  auto options = std::make_shared<WifiOptions>();
  auto common = std::make_shared<CommonOptions>();
  CLI::App* command =
      app.add_subcommand("wifi", "Show everything that the kernel tells of the Wi-Fi");
  command->add_flag("--json", options->json,
                    "Write {\"interface\":…,\"links\":[…]}, or null without Wi-Fi");
  addCommonOptions(*command, *common);
  command->callback([options, common, &choice] { choice = chooseWifi(*options, *common); });
}

}  // namespace

ParsedCommandLine parseCommandLine(std::span<const std::string> arguments) {
  CLI::App app{"Shows this machine's network as text, as JSON and as widgets.", programName};
  app.set_version_flag("--version", std::string(programName) + " " LANTERNFOLD_VERSION);
  app.require_subcommand(1);
  app.footer(footer);
  app.set_help_all_flag("--help-all", "Print the help of every command");
  CommandChoice choice = std::unexpected(CommandFailure{});
  addInterfaces(app, choice);
  addState(app, choice);
  addRecord(app, choice);
  addRender(app, choice);
  addGallery(app, choice);
  addTimeline(app, choice);
  addShow(app, choice);
  addCtl(app, choice);
  addWifi(app, choice);
  addLocation(app, choice);
  addEchoService(app, choice);
  addNet(app, choice);
  const ParsedArguments parsed = parseArguments(app, arguments);
  if (const auto* failure = std::get_if<CommandFailure>(&parsed)) return *failure;
  if (const auto* information = std::get_if<InformationText>(&parsed)) return *information;
  if (!choice) return choice.error();
  return *std::move(choice);
}

}  // namespace lanternfold
