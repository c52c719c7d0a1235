#include "Tests/Simulation/ProgramParts.h"

#include "NetworkMonitor/Metrics/FileConnectionMetricsStorage.h"
#include "NetworkMonitor/Metrics/InMemoryConnectionMetricsStorage.h"
#include "NetworkMonitor/Metrics/StandardConnectionBandwidthAnalyzer.h"
#include "NetworkMonitor/Metrics/UserDefaultsConnectionMetricsStorage.h"
#include "Tests/Simulation/DirectSampleObserver.h"

namespace lanternfold::simulation {

ProgramParts::ProgramParts(Installation& installation, Turn& program)
    : dispatch(installation.run.clock, installation.run.random.bits()),
      files(installation.disk, program),
      kernel(installation.machine, observer) {
  if (installation.storage == StorageKind::file) {
    observer = std::make_unique<FileSampleObserver>(installation.disk, program);
  }
  storage = makeStorage(installation);
  if (!observer) {
    observer = std::make_unique<DirectSampleObserver>(
        installation.run, program, *storage, countingOf(installation.is32bitCapped),
        [&installation] {
          return installation.storage == StorageKind::memory || !installation.defaults->isFailing;
        });
  }
  SimulatedClock& clock = installation.run.clock;
  recorder = ConnectionMetricsRecorder::make(
      storage, std::make_shared<ProgramReader>(installation, program, observer),
      DateUtils(clock, kernel), std::make_shared<StandardConnectionBandwidthAnalyzer>(),
      {.dispatch = dispatch, .clock = clock, .diagnostics = log});
}

std::shared_ptr<ConnectionMetricsStorage> ProgramParts::makeStorage(Installation& installation) {
  SimulatedClock& clock = installation.run.clock;
  switch (installation.storage) {
    case StorageKind::file:
      return std::make_shared<FileConnectionMetricsStorage>(
          FileConnectionMetricsStorage::Environment{
              .files = files, .clock = clock, .dispatch = dispatch, .log = log},
          installation.disk.paths.folder, "default");
    case StorageKind::userDefaults:
      return std::make_shared<UserDefaultsConnectionMetricsStorage>(
          UserDefaultsConnectionMetricsStorage::Environment{.clock = clock, .log = log},
          std::make_shared<FakeUserDefaults>(installation.defaults, "standard"));
    case StorageKind::memory:
      return std::make_shared<InMemoryConnectionMetricsStorage>(clock);
  }
  fatalError("an installation has a storage of no known kind");
}

}  // namespace lanternfold::simulation
