#include "CommandLine/Commands/RecordCommand.h"

#include <memory>
#include <utility>
#include <variant>

#include "CommandLine/KernelAccess.h"
#include "CommandLine/ObservedMetricsStorage.h"
#include "CommandLine/PlainNumber.h"
#include "CommandLine/SampleJson.h"
#include "CommandLine/SampleText.h"
#include "NetworkMonitor/Metrics/MetricsGraph.h"
#include "NetworkMonitor/Metrics/RecordedConnectionMetricsReader.h"
#include "NetworkMonitor/Metrics/SampleFailure.h"
#include "Support/FileRemedy.h"
#include "Wiring/PrintableText.h"

namespace lanternfold {
namespace {

constexpr std::uint64_t shortestIntervalSeconds = 1;
constexpr std::uint64_t longestIntervalSeconds = 86400;

CommandFailure cannotRecord(const std::string& reason) {
  return workFailed("cannot record this machine's traffic: " + reason);
}

CommandFailure failureOf(const ConnectionMetricsError& error, const Machine& machine,
                         const std::filesystem::path& folder) {
  if (std::holds_alternative<ConnectionMetricsReaderError>(error)) {
    if (const auto access = requireReadableKernel(machine); !access) return access.error();
  }
  return cannotRecord(sampleFailure(error, machine.platform.fileSystem, folder));
}

std::expected<void, CommandFailure> recordOnce(const RecordOptions& options, const Machine& machine,
                                               const Console& console,
                                               const std::filesystem::path& folder) {
  const auto recorder = makeMetricsRecorder(machine.platform, machine.metricsReader,
                                            makeMetricsStorage(machine.platform, folder), folder);
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
    // Whoever read the output is gone, or the disk is full.
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
            machine.platform, machine.metricsReader,
            std::make_shared<ObservedMetricsStorage>(
                makeMetricsStorage(machine.platform, folder),
                [this](ConnectionMetricsMap sampled) { report(std::move(sampled)); }),
            folder)),
        reader_(std::make_unique<RecordedConnectionMetricsReader>(recorder_)) {}

  void start(std::optional<std::chrono::seconds> interval) {
    if (interval) recorder_->setInterval(*interval);
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
    return std::unexpected(cannotRecord(cannotWrite(folder / soleRecorderFile, claim.error())));
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
  machine.platform.dispatch.mainQueue().async([&] { recording.start(options.interval); });
  machine.mainLoop.runUntilInterrupted();
  recording.finish();
  return {};
}

}  // namespace

std::expected<std::chrono::seconds, CommandFailure> parseInterval(std::string_view text) {
  const auto seconds = plainWholeNumber(text);
  if (!seconds || *seconds < shortestIntervalSeconds || *seconds > longestIntervalSeconds) {
    return std::unexpected(badArguments(std::string("--interval takes ") + intervalValues +
                                        ", not " + inQuotes(text)));
  }
  return std::chrono::seconds(*seconds);
}

std::expected<void, CommandFailure> checkRecordOptions(const RecordOptions& options) {
  if (!options.once || !options.interval) return {};
  return std::unexpected(
      badArguments("--once takes one sample, so --interval means nothing; leave one of them out"));
}

std::expected<void, CommandFailure> runRecord(const RecordOptions& options, const Machine& machine,
                                              const Console& console) {
  const auto folder = metricsFolder(machine.platform, options.appGroupId);
  if (!folder) return std::unexpected(cannotRecord(folder.error()));
  return options.once ? recordOnce(options, machine, console, *folder)
                      : recordUntilInterrupted(options, machine, console, *folder);
}

}  // namespace lanternfold
