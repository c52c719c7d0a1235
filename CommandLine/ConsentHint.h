// How a command tells that the consent to show a Wi-Fi name is lacking.
#pragma once

#include "Wiring/Console.h"

namespace lanternfold {

/// That a name is withheld and how to decide, in one line among the errors. The commands never ask:
/// asking is a host's business.
void tellHowToDecide(const Console& console);

}  // namespace lanternfold
