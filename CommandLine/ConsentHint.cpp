#include "CommandLine/ConsentHint.h"

#include "Wiring/ProgramName.h"

namespace lanternfold {

void tellHowToDecide(const Console& console) {
  console.errors << programName << ": the network's name is withheld until you decide: \""
                 << programName << " location allow\" shows Wi-Fi names, \"" << programName
                 << " location deny\" does not\n";
}

}  // namespace lanternfold
