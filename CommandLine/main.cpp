// The entry point of `lanternfold-widgets`: the process, and the machine that LinuxMachine.cpp
// wires.
#include <ext/stdio_filebuf.h>
#include <iostream>
#include <memory>
#include <string>
#include <unistd.h>
#include <vector>

#include "CommandLine/Program.h"
#include "Wiring/LinuxMachine.h"
#include "Wiring/ProcessSetup.h"

int main(int argumentCount, char** arguments) {
  using namespace lanternfold;
  setUpProcess();
  std::unique_ptr<LinuxMachine> machine;
  // std::cin takes an error of reading for the end.
  __gnu_cxx::stdio_filebuf<char> inputBuffer(STDIN_FILENO, std::ios::in | std::ios::binary);
  std::istream input(&inputBuffer);
  if (!inputBuffer.is_open()) input.setstate(std::ios::badbit);
  const Console console{.output = std::cout,
                        .errors = std::cerr,
                        .style = styleOfStandardOutput(),
                        .input = &input,
                        .isReaderGone = isReaderOfStandardOutputGone};
  const ExitStatus status =
      runProgram(std::vector<std::string>(arguments + 1, arguments + argumentCount), console,
                 [&machine](const MachineOptions& options) -> const Machine& {
                   machine = std::make_unique<LinuxMachine>(options);
                   return machine->machine();
                 });
  return static_cast<int>(status);
}
