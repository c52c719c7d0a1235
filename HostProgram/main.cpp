// The entry point of `lanternfold-widget-host`.
#include <iostream>
#include <string>
#include <vector>

#include "HostProgram/HostProgram.h"
#include "Wiring/ProcessSetup.h"

int main(int argumentCount, char** arguments) {
  using namespace lanternfold;
  setUpProcess();
  const Console console{.output = std::cout, .errors = std::cerr};
  return static_cast<int>(
      runHostProgram(std::vector<std::string>(arguments + 1, arguments + argumentCount), console));
}
