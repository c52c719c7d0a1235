// Something that the world does again and again, at moments that come by chance.
#pragma once

#include <chrono>
#include <functional>
#include <utility>

#include "Tests/Simulation/RunContext.h"

namespace lanternfold::simulation {

/// Calls `act` so often on average, from now to the end of the run.
inline void repeat(RunContext& run, std::chrono::nanoseconds meanWait, std::function<void()> act) {
  run.scheduler.after(run.random.waiting(meanWait), [&run, meanWait, act = std::move(act)] {
    act();
    repeat(run, meanWait, act);
  });
}

}  // namespace lanternfold::simulation
