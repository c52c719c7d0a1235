#include "ExtensionProgram/ExtensionCommandLine.h"

#include <charconv>
#include <system_error>
#include <utility>

#include <CLI/CLI.hpp>

#include "Wiring/ArgumentParsing.h"
#include "Wiring/CommonOptions.h"
#include "Wiring/PrintableText.h"
#include "Wiring/ProgramName.h"

namespace lanternfold {
namespace {

constexpr const char* programDescription =
    "Answers a widget host over a socket that the host has opened. It is not meant to be started "
    "by "
    "hand: \"lanternfold-widgets timeline KIND\" asks the same widgets.";

constexpr const char* descriptorValues = "the number of an open descriptor, 0 or from 3 on";

/// Standard output is for diagnostics, and standard error for failures.
std::optional<int> parseDescriptor(const std::string& text) {
  int number = 0;
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc{} || rest != end || number < 0) return std::nullopt;
  if (number == 1 || number == 2) return std::nullopt;
  return number;
}

ParsedExtensionCommandLine choose(const std::string& descriptor, const CommonOptions& common) {
  const auto number = parseDescriptor(descriptor);
  if (!number) {
    return badArguments(std::string("--service-fd takes ") + descriptorValues + ", not " +
                        inQuotes(descriptor));
  }
  auto choice = checkCommonOptions(common);
  if (!choice) return choice.error();
  return ExtensionChoice{
      .serviceDescriptor = *number,
      .monitor = std::move(choice->monitor),
      .dataFolder = std::move(choice->dataFolder),
      .certificateAuthoritiesFile = std::move(choice->certificateAuthoritiesFile)};
}

}  // namespace

ParsedExtensionCommandLine parseExtensionCommandLine(std::span<const std::string> arguments) {
  CLI::App app{programDescription, extensionProgramName};
  app.set_version_flag("--version", std::string(extensionProgramName) + " " LANTERNFOLD_VERSION);
  std::string descriptor;
  CommonOptions common;
  app.add_option("--service-fd", descriptor,
                 "The descriptor of a connected stream socket, on which the host speaks JSON-RPC "
                 "2.0, one object a line")
      ->option_text("N")
      ->type_name(descriptorValues)
      ->required();
  addCommonOptions(app, common);
  const ParsedArguments parsed = parseArguments(app, arguments);
  if (const auto* failure = std::get_if<CommandFailure>(&parsed)) return *failure;
  if (const auto* information = std::get_if<InformationText>(&parsed)) return *information;
  return choose(descriptor, common);
}

}  // namespace lanternfold
