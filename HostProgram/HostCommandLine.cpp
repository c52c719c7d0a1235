#include "HostProgram/HostCommandLine.h"

#include <charconv>
#include <system_error>
#include <utility>

#include <CLI/CLI.hpp>

#include "Wiring/PrintableText.h"

namespace lanternfold {
namespace {

constexpr const char* programDescription =
    "Shows the widgets on the desktop until it is asked to end. \"lanternfold-widgets show\" "
    "starts it.";

constexpr const char* intervalValues = "a number of seconds from 10 to 86400";
constexpr long shortestInterval = 10;
constexpr long longestInterval = 86400;

std::optional<std::chrono::seconds> parseInterval(const std::string& text) {
  long number = 0;
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc{} || rest != end) return std::nullopt;
  if (number < shortestInterval || number > longestInterval) return std::nullopt;
  return std::chrono::seconds(number);
}

ParsedHostCommandLine choose(const std::optional<std::string>& interval, CommonOptions common) {
  auto checked = checkCommonOptions(common);
  if (!checked) return checked.error();
  HostChoice choice{.common = std::move(common), .dataFolder = std::move(checked->dataFolder)};
  if (!interval) return choice;
  const auto seconds = parseInterval(*interval);
  if (!seconds) {
    return badArguments(std::string("--refresh-interval takes ") + intervalValues + ", not " +
                        inQuotes(*interval));
  }
  choice.refreshInterval = *seconds;
  return choice;
}

}  // namespace

ParsedHostCommandLine parseHostCommandLine(std::span<const std::string> arguments) {
  CLI::App app{programDescription, hostProgramName};
  app.set_version_flag("--version", std::string(hostProgramName) + " " LANTERNFOLD_VERSION);
  std::optional<std::string> interval;
  CommonOptions common;
  app.add_option("--refresh-interval", interval,
                 "How long a widget stays as it is when nothing happens (300)")
      ->option_text("SECONDS")
      ->type_name(intervalValues);
  addCommonOptions(app, common);
  const ParsedArguments parsed = parseArguments(app, arguments);
  if (const auto* failure = std::get_if<CommandFailure>(&parsed)) return *failure;
  if (const auto* information = std::get_if<InformationText>(&parsed)) return *information;
  return choose(interval, std::move(common));
}

}  // namespace lanternfold
