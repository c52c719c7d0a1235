// What every program does to its own process before it begins.
//
// Called by: each `main`, first of all. Read by: its console.
#pragma once

#include "Wiring/Console.h"

namespace lanternfold {

/// Descriptors, signals and locale: a closed standard descriptor stays closed to everybody, what
/// cannot be written is an error and no signal, numbers in JSON and in pictures keep their point,
/// and the system's words for an error are English like the sentences that they stand in, whatever
/// the user's locale says. Before any thread is started.
void setUpProcess();

/// Coloured on a terminal that takes colours, unless NO_COLOR is set.
[[nodiscard]] TextStyle styleOfStandardOutput();

[[nodiscard]] bool isReaderOfStandardOutputGone();

}  // namespace lanternfold
