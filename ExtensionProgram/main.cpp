// The entry point of `lanternfold-widget-extension`.
#include <iostream>
#include <string>
#include <vector>

#include "ExtensionProgram/ExtensionProgram.h"
#include "Wiring/ProcessSetup.h"

int main(int argumentCount, char** arguments) {
  using namespace lanternfold;
  setUpProcess();
  const Console console{.output = std::cout, .errors = std::cerr};
  return static_cast<int>(runExtensionProgram(
      std::vector<std::string>(arguments + 1, arguments + argumentCount), console));
}
