// How the kernel shows and schedules one of this program's threads.
#pragma once

#include <string>

namespace lanternfold {

/// Names the calling thread; only the first 15 bytes are kept.
void nameCurrentThread(const std::string& name);

/// Puts the calling thread behind all ordinary ones when processors are short. Cannot be undone
/// without privileges; a refusal changes nothing.
void lowerPriorityOfCurrentThread();

}  // namespace lanternfold
