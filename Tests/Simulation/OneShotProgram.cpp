#include "Tests/Simulation/OneShotProgram.h"

namespace lanternfold::simulation {

void OneShotProgram::begin() {
  turn_.begin([this] { live(); });
}

void OneShotProgram::live() {
  RunContext& run = installation_.run;
  ProgramParts parts(installation_, turn_);
  const auto found = parts.recorder->onceSync();
  const auto outcomes = parts.observer->takeOutcomes();
  run.log.add(found ? Happening::sampled : Happening::sampleFailed, turn_.number());
  if (outcomes.size() != 1 || outcomes.front().isComplete != found.has_value()) {
    run.broken(turn_.number(), "reports another end of its sample than it came to");
    return;
  }
  if (!found || !outcomes.front().isUndisturbed) return;
  const RememberedInterfaces* held = parts.observer->held();
  for (std::size_t position = 0; held && position < found->size(); ++position) {
    const auto remembered = held->find(found->name(position));
    if (remembered == held->end() || remembered->second.adjusted != found->value(position)) {
      run.broken(turn_.number(),
                 "gives other counters of " + found->name(position) + " than it has saved");
    }
  }
}

}  // namespace lanternfold::simulation
