#include "CommandLine/NetCommandLine.h"

#include <cstddef>
#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <ranges>
#include <string>
#include <utility>

#include <CLI/CLI.hpp>

#include "CommandLine/Commands/NetCommand.h"
#include "CommandLine/Commands/NetSendCommand.h"

namespace lanternfold {
namespace {

constexpr const char* inputHelp = "; without one, what stands in --file, or on standard input";

/// Every command takes them. These here ask no services and keep nothing, so that the help leaves
/// them out.
void addUnshownCommonOptions(CLI::App& command, CommonOptions& common) {
  const auto own = static_cast<std::ptrdiff_t>(command.get_options().size());
  addCommonOptions(command, common);
  for (CLI::Option* each : command.get_options() | std::views::drop(own)) each->group("");
}

void addText(CLI::App& command, NetTextOptions& options, const char* name, const char* what) {
  command.add_option("text", options.text.argument, std::string(what) + inputHelp)
      ->option_text(name)
      ->type_name("a text");
  command.add_option("--file", options.text.file, "Read it from this file or pipe")
      ->option_text("FILE")
      ->type_name("a file's name");
}

using TextRun = std::function<std::expected<void, CommandFailure>(const NetTextOptions&,
                                                                  const Machine&, const Console&)>;

CommandChoice chooseText(const NetTextOptions& options, const CommonOptions& common, TextRun run) {
  const auto checked = checkCommonOptions(common);
  if (!checked) return std::unexpected(checked.error());
  if (options.text.argument && options.text.file) {
    return std::unexpected(badArguments("the text and --file exclude each other; give one"));
  }
  return chosenCommand(
      *checked, options.json,
      [options, run = std::move(run)](const Machine& machine, const Console& console) {
        return run(options, machine, console);
      });
}

/// A command that works on a text and takes nothing else.
struct TextCommand {
  const char* name;
  const char* help;
  const char* argument;
  const char* argumentHelp;
  const char* jsonHelp;
  TextRun run;
};

void addTextCommand(CLI::App& net, const TextCommand& wanted, CommandChoice& choice) {
  auto options = std::make_shared<NetTextOptions>();
  auto common = std::make_shared<CommonOptions>();
  CLI::App* command = net.add_subcommand(wanted.name, wanted.help);
  addText(*command, *options, wanted.argument, wanted.argumentHelp);
  command->add_flag("--json", options->json, wanted.jsonHelp);
  addUnshownCommonOptions(*command, *common);
  command->callback([options, common, run = wanted.run, &choice] {
    choice = chooseText(*options, *common, run);
  });
}

struct ResolveOptions {
  NetTextOptions name;
  bool ipv4 = false;
  bool ipv6 = false;
};

std::optional<IPVersion> versionOf(const ResolveOptions& options) {
  if (options.ipv4) return IPVersion::ipv4;
  return options.ipv6 ? std::optional(IPVersion::ipv6) : std::nullopt;
}

CommandChoice chooseResolve(const ResolveOptions& options, const CommonOptions& common) {
  if (options.ipv4 && options.ipv6) {
    return std::unexpected(badArguments(
        "--ipv4 and --ipv6 exclude each other; give one, or none for whichever there is"));
  }
  return chooseText(options.name, common,
                    [version = versionOf(options)](const NetTextOptions& name,
                                                   const Machine& machine, const Console& console) {
                      return runNetResolve(name, version, machine, console);
                    });
}

void addResolve(CLI::App& net, CommandChoice& choice) {
  auto options = std::make_shared<ResolveOptions>();
  auto common = std::make_shared<CommonOptions>();
  CLI::App* command = net.add_subcommand(
      "resolve", "Find an address of a host, IPv4 before IPv6, as the system looks it up");
  addText(*command, options->name, "NAME", "The host's name");
  command->add_flag("--ipv4", options->ipv4, "An IPv4 address only");
  command->add_flag("--ipv6", options->ipv6, "An IPv6 address only");
  command->add_flag("--json", options->name.json, "Write {\"ip\":…,\"v\":4} or 6");
  addUnshownCommonOptions(*command, *common);
  command->callback([options, common, &choice] { choice = chooseResolve(*options, *common); });
}

CommandChoice chooseSend(const NetSendOptions& options, const CommonOptions& common) {
  const auto checked = checkCommonOptions(common);
  if (!checked) return std::unexpected(checked.error());
  auto plan = planNetSend(options);
  if (!plan) return std::unexpected(plan.error());
  return chosenCommand(*checked, options.json,
                       [plan = *std::move(plan)](const Machine& machine, const Console& console) {
                         return runNetSend(plan, machine, console);
                       });
}

void addSend(CLI::App& net, CommandChoice& choice) {
  auto options = std::make_shared<NetSendOptions>();
  auto common = std::make_shared<CommonOptions>();
  CLI::App* command = net.add_subcommand(
      "send",
      "Send one message and show the reply; without --text, --hex and --file it is read "
      "from standard input");
  command->add_flag("--tcp", options->tcp,
                    "Over a connection; the reply ends when the peer ends its side");
  command->add_flag("--udp", options->udp, "As a datagram; the reply is one, too");
  command
      ->add_option("host", options->host,
                   "An address or a name; an address of one link with its interface, as "
                   "fe80::1%eth0")
      ->option_text("HOST")
      ->type_name("an address or a name")
      ->required();
  command->add_option("port", options->port, "1 to 65535")
      ->option_text("PORT")
      ->type_name(portValues)
      ->required();
  command
      ->add_option("--timeout", options->timeout, "Seconds to wait at the most; default no limit")
      ->option_text("SECONDS")
      ->type_name(timeoutValues);
  command->add_option("--text", options->text, "The message")
      ->option_text("TEXT")
      ->type_name("a text");
  command->add_option("--hex", options->hex, "The message's bytes, as \"48 65 6c\"")
      ->option_text("HEX")
      ->type_name(hexValues);
  command->add_option("--file", options->file, "Read the message from this file or pipe")
      ->option_text("FILE")
      ->type_name("a file's name");
  command->add_flag("--json", options->json,
                    "Write {\"data\":base64,\"text\":…,\"from\":\"address:port\"}");
  addUnshownCommonOptions(*command, *common);
  command->callback([options, common, &choice] { choice = chooseSend(*options, *common); });
}

}  // namespace

void addNet(CLI::App& app, CommandChoice& choice) {
  CLI::App* net =
      app.add_subcommand("net", "Names of hosts, their addresses, and messages to them");
  net->require_subcommand(1);
  addTextCommand(*net,
                 {.name = "guess",
                  .help = "Tell whether a text is an address or the name of a host",
                  .argument = "TEXT",
                  .argumentHelp = "What somebody types as a target",
                  .jsonHelp = "Write {\"type\":…}, or null for neither",
                  .run = runNetGuess},
                 choice);
  addTextCommand(*net,
                 {.name = "validate",
                  .help = "Check whether a text can be the name of a host",
                  .argument = "NAME",
                  .argumentHelp = "The name",
                  .jsonHelp = "Write {\"valid\":…}",
                  .run = runNetValidate},
                 choice);
  addResolve(*net, choice);
  addSend(*net, choice);
}

}  // namespace lanternfold
