#include "CommandLine/Program.h"

#include <cerrno>
#include <expected>
#include <sstream>
#include <system_error>
#include <utility>

#include <CLI/CLI.hpp>

#include "CommandLine/Commands/InterfacesCommand.h"
#include "CommandLine/Commands/RenderCommand.h"
#include "CommandLine/Commands/StateCommand.h"
#include "CommandLine/PrintableText.h"

namespace lanternfold {
namespace {

constexpr const char* programName = "lanternfold-widgets";

/// A command that was chosen and parsed, ready to run.
struct ChosenCommand {
  std::function<std::expected<void, CommandFailure>(const Machine&, const Console&)> run;
  DiagnosticsTarget diagnostics = DiagnosticsTarget::standardOutput;
};

DiagnosticsTarget diagnosticsBeside(bool json) {
  return json ? DiagnosticsTarget::standardError : DiagnosticsTarget::standardOutput;
}

constexpr const char* exitStatusText =
    "Exit status: 0 done; 1 the work failed; 2 the command line was not understood.\n"
    "Failures are one line on standard error. NO_COLOR switches colours off.";

void addInterfaces(CLI::App& app, ChosenCommand& chosen) {
  auto options = std::make_shared<InterfacesOptions>();
  CLI::App* command = app.add_subcommand("interfaces", "List this machine's network interfaces");
  command
      ->add_option("--prefix", options->prefix,
                   "Only interfaces whose name begins with PREFIX; \"en\" takes every network "
                   "adapter of this machine, however the kernel calls it")
      ->option_text("PREFIX");
  command->add_option("--excluding", options->excluding, "Leave these interfaces out")
      ->option_text("NAME,NAME")
      ->delimiter(',');
  command->add_flag("--json", options->json, "Write a JSON array of the interface records");
  command->callback([options, &chosen] {
    chosen = {.run =
                  [options](const Machine& machine, const Console& console) {
                    return runInterfaces(*options, machine, console);
                  },
              .diagnostics = diagnosticsBeside(options->json)};
  });
}

void addState(CLI::App& app, ChosenCommand& chosen) {
  struct Parsed {
    StateOptions options;
    std::string categories = "other";
  };
  auto parsed = std::make_shared<Parsed>();
  CLI::App* command = app.add_subcommand("state", "Show the state of this machine's network");
  command
      ->add_option("--categories", parsed->categories,
                   "What to resolve: other (network adapters), cellular; default other")
      ->option_text("NAME,NAME");
  command->add_flag("--json", parsed->options.json,
                    "Write {\"complete\":…,\"state\":{…}}; with --watch one object a line");
  command->add_flag("--watch", parsed->options.watch,
                    "Report again at every change of a link, an address or a default route, until "
                    "interrupted");
  command->callback([parsed, &chosen] {
    chosen = {.run = [parsed](const Machine& machine,
                              const Console& console) -> std::expected<void, CommandFailure> {
                const auto categories = parseCategories(parsed->categories);
                if (!categories) return std::unexpected(categories.error());
                parsed->options.categories = *categories;
                return runState(parsed->options, machine, console);
              },
              .diagnostics = diagnosticsBeside(parsed->options.json)};
  });
}

void addRender(CLI::App& app, ChosenCommand& chosen) {
  auto options = std::make_shared<RenderOptions>();
  CLI::App* command = app.add_subcommand("render", "Draw a widget into a PNG, SVG or PDF file");
  command->add_option("kind", options->kind, "The widget: NetworkAdapterWidget")
      ->option_text("KIND")
      ->required();
  command->add_option("--family", options->family, "The widget's size: medium (the default)")
      ->option_text("FAMILY");
  command->add_option("--scheme", options->scheme, "light (the default) or dark")
      ->option_text("SCHEME");
  command->add_option("--scale", options->scale, "Pixels a point, 0.5 to 8; default 2")
      ->option_text("N");
  command
      ->add_option("--entry", options->entry,
                   "timeline (this machine, the default), snapshot or placeholder (samples)")
      ->option_text("ENTRY");
  command
      ->add_option("--adapter", options->adapter,
                   "The interface to show; by default the one of the best default route")
      ->option_text("NAME");
  command->add_flag("--show-timestamp", options->showTimestamp, "Draw the time of drawing");
  command->add_option("-o,--output", options->output, "The file to write: *.png, *.svg or *.pdf")
      ->option_text("FILE")
      ->required();
  command->callback([options, &chosen] {
    chosen.run = [options](const Machine& machine, const Console& console) {
      return runRender(*options, machine, console);
    };
  });
}

void report(const CommandFailure& failure, const Console& console) {
  console.errors << programName << ": " << printable(failure.sentence) << '\n';
}

/// Help and the version are results and go to standard output; everything else that the parser
/// throws is a bad argument, told in one line.
ExitStatus finishParsing(const CLI::App& app, const CLI::Error& error, const Console& console) {
  if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) {
    std::ostringstream text;
    std::ostringstream ignored;
    (void)app.exit(error, text, ignored);
    console.output << text.str();
    return ExitStatus::done;
  }
  report(badArguments(std::string(error.what()) + "; \"" + programName +
                      " --help\" lists the commands and their options"),
         console);
  return ExitStatus::badArguments;
}

/// A result that could not be written (a full disk, a closed pipe) is not a success.
ExitStatus finishWriting(const Console& console) {
  errno = 0;
  console.output.flush();
  if (console.output) return ExitStatus::done;
  report(workFailed("cannot write to standard output; check that the disk is not full and that "
                    "whoever reads the output is still there"),
         console);
  return ExitStatus::failed;
}

/// What the system lacks for the program to start (descriptors, memory, threads) is a failure like
/// any other.
std::expected<void, CommandFailure> run(const ChosenCommand& chosen, const Console& console,
                                        const MachineProvider& machine) {
  try {
    return chosen.run(machine(chosen.diagnostics), console);
  } catch (const std::system_error& error) {
    return std::unexpected(workFailed(std::string("the system lacks what is needed: ") +
                                      error.what() +
                                      "; check the limits on open files, threads and memory"));
  }
}

}  // namespace

ExitStatus runProgram(std::span<const std::string> arguments, const Console& console,
                      const MachineProvider& machine) {
  CLI::App app{"Shows this machine's network as text, as JSON and as widgets.", programName};
  app.set_version_flag("--version", std::string(programName) + " " LANTERNFOLD_VERSION);
  app.require_subcommand(1);
  app.footer(exitStatusText);
  app.set_help_all_flag("--help-all", "Print the help of every command");
  ChosenCommand chosen;
  addInterfaces(app, chosen);
  addState(app, chosen);
  addRender(app, chosen);
  try {
    // The parser takes its arguments from the back.
    app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
  } catch (const CLI::Error& error) {
    return finishParsing(app, error, console);
  }
  if (const auto result = run(chosen, console, machine); !result) {
    report(result.error(), console);
    return result.error().status;
  }
  return finishWriting(console);
}

}  // namespace lanternfold
