#include "CommandLine/Commands/RecordCommand.h"

#include <memory>
#include <utility>
#include <variant>

#include "CommandLine/KernelAccess.h"
#include "CommandLine/MetricsGraph.h"
#include "CommandLine/ObservedMetricsStorage.h"
#include "CommandLine/PrintableText.h"
#include "CommandLine/SampleJson.h"
#include "CommandLine/SampleText.h"
#include "NetworkMonitor/Metrics/RecordedConnectionMetricsReader.h"

namespace lanternfold {
namespace {

constexpr double shortestIntervalSeconds = 1;
constexpr double longestIntervalSeconds = 86400;

CommandFailure cannotRecord(const std::string& reason) {
  return workFailed("cannot record this machine's traffic: " + reason);
}

CommandFailure failureOf(const ConnectionMetricsError& error, const Machine& machine,
                         const std::filesystem::path& folder) {
  if (std::holds_alternative<ConnectionMetricsReaderError>(error)) {
    if (const auto access = requireReadableKernel(machine); !access) return access.error();
  }
  return cannotRecord(sampleFailure(error, folder));
}

std::expected<void, CommandFailure> recordOnce(const RecordOptions& options, const Machine& machine,
                                               const Console& console,
                                               const std::filesystem::path& folder) {
  const auto recorder = makeMetricsRecorder(machine, makeMetricsStorage(machine, folder));
  const auto sampled = recorder->onceSync();
  if (!sampled) return std::unexpected(failureOf(sampled.error(), machine, folder));
  if (options.json) {
    console.output << metricsMapJson(*sampled) << '\n';
  } else {
    writeMetricsTable(*sampled, machine.platform.strings, console);
  }
  return {};
}

/// Writes a line for every sample. On the recorder's queue.
class SampleWriter {
 public:
  SampleWriter(const RecordOptions& options, const Machine& machine, const Console& console)
      : options_(options), machine_(machine), console_(console) {}

  void write(RecordedSample sample) {
    console_.output << (options_.json ? sampleJson(sample) : line(sample)) << '\n' << std::flush;
    earlier_ = std::move(sample);
    // Whoever read the output is gone: the program says so and ends.
    if (!console_.output) machine_.mainLoop.stop();
  }

 private:
  [[nodiscard]] std::string line(const RecordedSample& sample) const {
    return sampleLine(sample, earlier_, machine_.platform.interfaceNaming.matcher("en"),
                      machine_.platform.strings, console_.style);
  }

  const RecordOptions& options_;
  const Machine& machine_;
  const Console& console_;
  std::optional<RecordedSample> earlier_;
};

/// A recorder that adapts its interval to the traffic, over the file in a folder.
class Recording {
 public:
  Recording(const Machine& machine, const std::filesystem::path& folder, SampleWriter& writer)
      : machine_(machine),
        writer_(writer),
        recorder_(makeMetricsRecorder(
            machine, std::make_shared<ObservedMetricsStorage>(
                         makeMetricsStorage(machine, folder),
                         [this](ConnectionMetricsMap sampled) { report(std::move(sampled)); }))),
        reader_(std::make_unique<RecordedConnectionMetricsReader>(recorder_)) {}

  void start(std::optional<double> intervalSeconds) {
    if (intervalSeconds) recorder_->setInterval(std::chrono::duration<double>(*intervalSeconds));
    // The samples are reported as they are taken; what was remembered before is not asked for.
    reader_->read([](const ConnectionMetricsRecorder::Metrics&) {});
  }

  /// Waits for the step under way, and for its report.
  void finish() {
    reader_.reset();
    for (int count = 0; count < 2; ++count) (void)queue().sync([] {});
  }

 private:
  DispatchQueue& queue() const {
    return machine_.platform.dispatch.serialQueue(ConnectionMetricsRecorder::queueLabel,
                                                  QualityOfService::background);
  }

  /// Within the step; its class and the interval that follows from it are known when it has ended.
  void report(ConnectionMetricsMap sampled) {
    RecordedSample sample{.date = machine_.platform.clock.now(),
                          .moment = machine_.platform.clock.steadyNow(),
                          .metrics = std::move(sampled)};
    queue().async([this, sample = std::move(sample)]() mutable {
      sample.bandwidthClass = recorder_->currentBandwidthClass();
      sample.intervalSeconds = recorder_->interval().count();
      writer_.write(std::move(sample));
    });
  }

  const Machine& machine_;
  SampleWriter& writer_;
  std::shared_ptr<ConnectionMetricsRecorder> recorder_;
  std::unique_ptr<RecordedConnectionMetricsReader> reader_;
};

std::expected<void, CommandFailure> recordUntilInterrupted(const RecordOptions& options,
                                                           const Machine& machine,
                                                           const Console& console,
                                                           const std::filesystem::path& folder) {
  const auto claim = machine.soleRecorder.claim(folder);
  if (!claim) {
    return std::unexpected(cannotRecord("cannot write into " + folder.string() + ": " +
                                        claim.error().message() +
                                        "; check the folder's permissions, or choose another one "
                                        "with --data-dir"));
  }
  if (!*claim) {
    machine.platform.diagnostics.line("Another recorder keeps the traffic in " +
                                      printable(folder.string()) +
                                      " already; nothing is left to do.");
    return {};
  }
  if (!options.json) {
    console.output << "Recording into " << printable(folder.string()) << " until interrupted.\n"
                   << std::flush;
  }
  SampleWriter writer(options, machine, console);
  Recording recording(machine, folder, writer);
  // From within the loop: whoever interrupts the program after its first sample ends it properly.
  machine.platform.dispatch.mainQueue().async([&] { recording.start(options.intervalSeconds); });
  machine.mainLoop.runUntilInterrupted();
  recording.finish();
  return {};
}

}  // namespace

std::expected<void, CommandFailure> checkRecordOptions(const RecordOptions& options) {
  if (!options.intervalSeconds) return {};
  if (options.once) {
    return std::unexpected(badArguments("--once takes one sample, so --interval means nothing"));
  }
  // Written so that a number that is none fails too.
  if (!(*options.intervalSeconds >= shortestIntervalSeconds &&
        *options.intervalSeconds <= longestIntervalSeconds)) {
    return std::unexpected(badArguments("the interval must be between 1 and 86400 seconds"));
  }
  return {};
}

std::expected<void, CommandFailure> runRecord(const RecordOptions& options, const Machine& machine,
                                              const Console& console) {
  const auto folder = metricsFolder(machine, options.appGroupId);
  if (!folder) return std::unexpected(cannotRecord(noMetricsFolder));
  return options.once ? recordOnce(options, machine, console, *folder)
                      : recordUntilInterrupted(options, machine, console, *folder);
}

}  // namespace lanternfold
