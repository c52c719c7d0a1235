#include "HostProgram/HostCommandLine.h"

#include <charconv>
#include <system_error>
#include <utility>

#include <CLI/CLI.hpp>

#include "Wiring/PrintableText.h"
#include "Wiring/ProgramName.h"
#include "Wiring/StartNotice.h"

namespace lanternfold {
namespace {

constexpr const char* programDescription =
    "Shows the widgets on the desktop until it is asked to end. \"lanternfold-widgets show\" "
    "starts it.";

constexpr const char* descriptorValues = "the number of an open descriptor from 3 on";

/// As they stand on the command line, not yet checked.
struct HostOptions {
  std::optional<std::string> interval;
  std::optional<std::string> started;
  CommonOptions common;
};

std::expected<int, CommandFailure> parseDescriptor(const std::string& text) {
  int number = 0;
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number);
  if (error == std::errc{} && rest == end && number >= 3) return number;
  return std::unexpected(badArguments(std::string(startNoticeOption) + " takes " +
                                      descriptorValues + ", not " + inQuotes(text)));
}

ParsedHostCommandLine choose(HostOptions options) {
  auto checked = checkCommonOptions(options.common);
  if (!checked) return checked.error();
  HostChoice choice{.common = std::move(options.common),
                    .dataFolder = std::move(checked->dataFolder)};
  if (options.interval) {
    const auto interval = parseRefreshInterval(*options.interval);
    if (!interval) return interval.error();
    choice.refreshInterval = *interval;
  }
  if (options.started) {
    const auto descriptor = parseDescriptor(*options.started);
    if (!descriptor) return descriptor.error();
    choice.startedDescriptor = *descriptor;
  }
  return choice;
}

}  // namespace

ParsedHostCommandLine parseHostCommandLine(std::span<const std::string> arguments) {
  CLI::App app{programDescription, hostProgramName};
  app.set_version_flag("--version", std::string(hostProgramName) + " " LANTERNFOLD_VERSION);
  HostOptions options;
  app.add_option("--refresh-interval", options.interval,
                 "How long a widget stays as it is when nothing happens (300)")
      ->option_text("SECONDS")
      ->type_name(refreshIntervalValues);
  app.add_option(startNoticeOption, options.started,
                 "A pipe's end, to which a byte is written as soon as the widgets are shown")
      ->option_text("N")
      ->type_name(descriptorValues);
  addCommonOptions(app, options.common);
  const ParsedArguments parsed = parseArguments(app, arguments);
  if (const auto* failure = std::get_if<CommandFailure>(&parsed)) return *failure;
  if (const auto* information = std::get_if<InformationText>(&parsed)) return *information;
  return choose(std::move(options));
}

}  // namespace lanternfold
