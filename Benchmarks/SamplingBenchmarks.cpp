// A sampling step of a recorder over each storage, against the least that the storage could do.
#include <array>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>

#include "Benchmarks/Groups.h"
#include "Benchmarks/GrowingCounters.h"
#include "Benchmarks/RecordingProgram.h"
#include "Benchmarks/UnlockedStorage.h"
#include "NetworkMonitor/Metrics/ConnectionMetricsFileJson.h"
#include "Support/FatalError.h"

namespace lanternfold {

namespace {

constexpr std::array<std::size_t, 3> interfaceCounts = {8, 100, 1'000};
constexpr double fileAim = 2;
constexpr double noAim = 0;
/// Beyond it a step in user defaults, which takes the square of the interfaces, is timed once.
constexpr std::size_t mostInterfacesTimedOften = 100;

void sample(ConnectionMetricsRecorder& recorder, std::size_t interfaceCount) {
  const auto outcome = recorder.onceSync();
  if (!outcome) fatalError(describe(outcome.error()));
  if (outcome->size() != interfaceCount) fatalError("the step left interfaces out");
}

/// Steps of a recorder that has sampled before.
void step(benchmark::State& state, RecordingProgram& program, RecordingProgram::Storage storage,
          std::size_t interfaceCount) {
  const auto recorder = program.recorder(std::move(storage), interfaceCount);
  sample(*recorder, interfaceCount);
  for (auto iteration : state) sample(*recorder, interfaceCount);
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(interfaceCount));
}

void read(benchmark::State& state, RecordingProgram& program, std::size_t interfaceCount) {
  GrowingCounters counters(interfaceCount);
  for (auto iteration : state) {
    program.onRecorderQueue([&] { benchmark::DoNotOptimize(counters.read().value().size()); });
  }
}

/// The bytes of the file that a step writes, without the step.
void replaceFile(benchmark::State& state, RecordingProgram& program, std::size_t interfaceCount) {
  const auto storage = program.fileStorage("bytes");
  const auto recorder = program.recorder(storage, interfaceCount);
  sample(*recorder, interfaceCount);
  const std::string bytes =
      program.files().readFile(storage->storageUrl(), longestConnectionMetricsFileBytes)->bytes;
  const auto path = program.file("bytes-alone");
  for (auto iteration : state) {
    program.onRecorderQueue([&] {
      if (!program.files().replaceFile(path, bytes)) fatalError("the file could not be written");
    });
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes.size()));
}

void lockAndUnlock(benchmark::State& state, RecordingProgram& program) {
  FileLock lock = program.lock();
  for (auto iteration : state) {
    program.onRecorderQueue([&] {
      if (!lock.lock() || !lock.unlock()) fatalError("the lock could not be taken and given up");
    });
  }
}

PropertyListDictionary dictionaryOf(const ConnectionMetricsMap& counters) {
  PropertyListDictionary dictionary;
  for (const char* const type : {"0/", "1/"}) {
    for (std::size_t i = 0; i < counters.size(); ++i) {
      const std::string text = encodeConnectionMetrics(counters.value(i));
      const auto bytes = std::as_bytes(std::span(text));
      dictionary.append(type + counters.name(i),
                        PropertyListValue::Data(bytes.begin(), bytes.end()));
    }
  }
  return dictionary;
}

/// A suite that holds what an earlier step left.
std::shared_ptr<UserDefaults> filledSuite(RecordingProgram& program, std::size_t interfaceCount) {
  auto suite = program.suite();
  suite->set(UserDefaultsConnectionMetricsStorage::dataKey,
             dictionaryOf(GrowingCounters(interfaceCount).read().value()));
  return suite;
}

void stepInDefaults(benchmark::State& state, RecordingProgram& program,
                    std::size_t interfaceCount) {
  const auto recorder = program.recorder(
      program.defaultsStorage(filledSuite(program, interfaceCount)), interfaceCount);
  for (auto iteration : state) sample(*recorder, interfaceCount);
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(interfaceCount));
}

/// The dictionary that a step writes, once and to the disk.
void setDictionary(benchmark::State& state, RecordingProgram& program, std::size_t interfaceCount) {
  constexpr auto key = UserDefaultsConnectionMetricsStorage::dataKey;
  const auto suite = filledSuite(program, interfaceCount);
  const PropertyListValue dictionary = suite->object(key).value().value();
  for (auto iteration : state) {
    program.onRecorderQueue([&] {
      suite->set(key, dictionary);
      if (!suite->synchronize()) fatalError("the dictionary could not be written");
    });
  }
}

/// Many short runs: a disk that others use too is quiet for a moment only.
void waitForDisk(benchmark::internal::Benchmark* benchmark) {
  benchmark->Iterations(20)->Repetitions(20);
}

void add(RecordingProgram& program, std::size_t count) {
  const auto addTimed = [&](const std::string& work, std::function<void(benchmark::State&)> run) {
    return addBenchmark(work + "/" + std::to_string(count), std::move(run))
        ->MeasureProcessCPUTime()
        ->UseRealTime();
  };
  addTimed("step-memory", [&program, count](auto& state) {
    step(state, program, program.memoryStorage(), count);
  });
  addTimed("step-memory-read", [&program, count](auto& state) { read(state, program, count); });
  addTimed("step-file", [&program, count](auto& state) {
    step(state, program, program.fileStorage("locked"), count);
  })->Apply(waitForDisk);
  addTimed("step-file-unlocked", [&program, count](auto& state) {
    step(state, program, std::make_shared<UnlockedStorage>(program.fileStorage("unlocked")), count);
  })->Apply(waitForDisk);
  addTimed("step-file-lock", [&program](auto& state) {
    lockAndUnlock(state, program);
  })->Apply(waitForDisk);
  addTimed("step-file-replace", [&program, count](auto& state) {
    replaceFile(state, program, count);
  })->Apply(waitForDisk);
  auto* const inDefaults = addTimed(
      "step-defaults", [&program, count](auto& state) { stepInDefaults(state, program, count); });
  if (count > mostInterfacesTimedOften) inDefaults->Iterations(1)->Repetitions(1);
  addTimed("step-defaults-set", [&program, count](auto& state) {
    setDictionary(state, program, count);
  })->Apply(waitForDisk);
}

std::vector<RatioTable::Row> rowsOf(std::size_t count) {
  const std::string title = ", " + std::to_string(count) + " interfaces";
  const std::string suffix = "/" + std::to_string(count);
  const std::string replacement = "step-file-replace" + suffix;
  return {
      {"memory" + title, "step-memory" + suffix, "step-memory-read" + suffix, noAim},
      {"file" + title, "step-file" + suffix, replacement, fileAim},
      {"file without its lock" + title, "step-file-unlocked" + suffix, replacement, noAim},
      {"the lock alone" + title, "step-file-lock" + suffix, replacement, noAim},
      {"user defaults" + title, "step-defaults" + suffix, "step-defaults-set" + suffix, noAim},
  };
}

}  // namespace

RatioTable::Table measureSampling(RatioTable& reporter) {
  RatioTable::Table table{
      .title = "Sampling steps", .figure = RatioTable::Figure::elapsedTime, .rows = {}};
  for (const std::size_t count : interfaceCounts) {
    const auto rows = rowsOf(count);
    if (!areWanted(rows)) continue;
    RecordingProgram program;
    table.title = "Sampling steps, files on " + program.fileSystem();
    add(program, count);
    runBenchmarks(reporter);
    table.rows.insert(table.rows.end(), rows.begin(), rows.end());
  }
  return table;
}

}  // namespace lanternfold
