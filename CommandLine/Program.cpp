#include "CommandLine/Program.h"

#include <expected>
#include <string>
#include <system_error>
#include <variant>

#include "Support/FileRemedy.h"
#include "Wiring/PrintableText.h"
#include "Wiring/ProgramName.h"

namespace lanternfold {
namespace {

ExitStatus report(const CommandFailure& failure, const Console& console) {
  console.errors << programName << ": " << printable(failure.sentence) << '\n';
  return failure.status;
}

/// A result that could not be written (a full disk) is not a success. Whoever reads only the
/// beginning of it has what they wanted.
ExitStatus finishWriting(const Console& console) {
  console.output.flush();
  if (console.output || console.isReaderGone()) return ExitStatus::done;
  return report(workFailed("cannot write to standard output; check that it is open and that the "
                           "disk is not full"),
                console);
}

/// By its number, since the category of the networking library equals no standard condition.
std::string remedyForLack(const std::error_code& lack) {
  const std::error_code error(lack.value(), std::generic_category());
  const bool lacksFiles =
      error == std::errc::too_many_files_open || error == std::errc::too_many_files_open_in_system;
  return lacksFiles ? remedyFor(error) : "check the limits on threads and memory";
}

/// What the system lacks for the program to start (descriptors, memory, threads) is a failure like
/// any other.
std::expected<void, CommandFailure> run(const ChosenCommand& chosen, const Console& console,
                                        const MachineProvider& machine) {
  try {
    return chosen.run(machine(chosen.machine), console);
  } catch (const std::system_error& error) {
    return std::unexpected(workFailed(std::string("the system lacks what is needed: ") +
                                      error.what() + "; " + remedyForLack(error.code())));
  }
}

}  // namespace

ExitStatus runProgram(std::span<const std::string> arguments, const Console& console,
                      const MachineProvider& machine) {
  const ParsedCommandLine parsed = parseCommandLine(arguments);
  if (const auto* failure = std::get_if<CommandFailure>(&parsed)) return report(*failure, console);
  if (const auto* information = std::get_if<InformationText>(&parsed)) {
    console.output << information->text;
    return finishWriting(console);
  }
  const auto result = run(std::get<ChosenCommand>(parsed), console, machine);
  if (!result) return report(result.error(), console);
  return finishWriting(console);
}

}  // namespace lanternfold
