#include "Tests/Simulation/SimulationRun.h"

#include "Tests/Simulation/FaultScript.h"
#include "Tests/Simulation/ProgramScript.h"
#include "Tests/Simulation/TrafficScript.h"

namespace lanternfold::simulation {
namespace {

const DiskPaths diskPaths{.folder = "/m",
                          .data = "/m/connection-metrics-storage_default.json",
                          .lock = "/m/connection-metrics-storage_default.lock"};

void checkOrder(RunContext& run, const Profile& profile) {
  if (profile.isOrderly() && run.log.counts().of(Happening::disturbedSample) > 0) {
    run.broken(0, "a sample was disturbed where nothing can break the lock");
  }
}

SimulationResult runWorld(RunContext& run, std::uint64_t seed, std::chrono::nanoseconds length,
                          const Profile& profile) {
  Installation installation{
      .run = run,
      .machine = SimulatedMachine(run.clock, profile.bootDate),
      .disk = Disk(run, diskPaths, countingOf(profile.is32bitCapped)),
      .storage = profile.storage,
      .is32bitCapped = profile.is32bitCapped,
  };
  installation.disk.setInterruptions(profile.interruptions);
  installation.disk.files.setReusesFileNumbers(profile.reusesFileNumbers);
  const TrafficScript traffic(installation, profile);
  const FaultScript faults(installation, profile);
  ProgramScript programs(installation, profile);

  const auto begin = run.clock.steadyNow();
  run.scheduler.runUntil(begin + length, [&run] { return run.violation().has_value(); });
  checkOrder(run, profile);
  SimulationResult result{.seed = seed,
                          .simulated = run.clock.steadyNow() - begin,
                          .violation = run.violation(),
                          .story = "The world: " + describe(profile) + "\n" + run.log.lastEvents(),
                          .fingerprint = run.log.fingerprint(),
                          .counts = run.log.counts()};
  programs.killAll();
  run.scheduler.runUntil(run.clock.steadyNow(), [] { return false; });
  return result;
}

}  // namespace

SimulationResult simulate(std::uint64_t seed, std::chrono::nanoseconds length) {
  RunContext run(seed);
  const Profile profile = drawProfile(run.random);
  return runWorld(run, seed, length, profile);
}

SimulationResult simulate(std::uint64_t seed, std::chrono::nanoseconds length,
                          const Profile& profile) {
  RunContext run(seed);
  return runWorld(run, seed, length, profile);
}

std::string report(const SimulationResult& result, std::chrono::nanoseconds length) {
  const auto weeks = std::chrono::ceil<std::chrono::weeks>(length);
  // The events of a run do not depend on its length.
  const std::string option =
      weeks <= defaultLength ? "" : " --weeks " + std::to_string(weeks.count());
  return "Seed " + std::to_string(result.seed) + " breaks a rule after " +
         spanText(result.simulated) + ": " + result.violation.value_or("none") + "\n" +
         result.story + "Replay: Scripts/simulate --seed " + std::to_string(result.seed) + option +
         "\n";
}

}  // namespace lanternfold::simulation
