#include "CommandLine/Program.h"

#include <variant>

#include "Wiring/FailureReport.h"
#include "Wiring/ProgramName.h"

namespace lanternfold {

ExitStatus runProgram(std::span<const std::string> arguments, const Console& console,
                      const MachineProvider& machine) {
  const ParsedCommandLine parsed = parseCommandLine(arguments);
  if (const auto* failure = std::get_if<CommandFailure>(&parsed))
    return reportFailure(*failure, programName, console);
  if (const auto* information = std::get_if<InformationText>(&parsed)) {
    console.output << information->text;
    return finishWriting(programName, console);
  }
  const auto& chosen = std::get<ChosenCommand>(parsed);
  const auto result = withSystemLacks([&] { return chosen.run(machine(chosen.machine), console); });
  if (!result) return reportFailure(result.error(), programName, console);
  return finishWriting(programName, console);
}

}  // namespace lanternfold
