#include "Benchmarks/RatioTable.h"

#include <algorithm>
#include <cstdio>

namespace lanternfold {

namespace {

constexpr double nanosecondsPerMicrosecond = 1000;
constexpr double nanosecondsPerSecond = 1e9;
constexpr double bytesPerMegabyte = 1e6;

}  // namespace

void RatioTable::ReportRuns(const std::vector<Run>& runs) {
  ConsoleReporter::ReportRuns(runs);
  for (const Run& run : runs) {
    if (run.run_type != Run::RT_Iteration || run.iterations == 0) continue;
    const double scale = nanosecondsPerSecond / static_cast<double>(run.iterations);
    const Times times{.processor = run.cpu_accumulated_time * scale,
                      .elapsed = run.real_accumulated_time * scale};
    const auto [position, isNew] = fastest_.try_emplace(run.run_name.function_name, times);
    if (isNew) continue;
    Times& least = position->second;
    least.processor = std::min(least.processor, times.processor);
    least.elapsed = std::min(least.elapsed, times.elapsed);
  }
}

bool RatioTable::isMeasured(const Row& row) const {
  return fastest_.contains(row.subject) && fastest_.contains(row.baseline);
}

void RatioTable::print(const Table& table) const {
  const bool isEmpty =
      std::ranges::none_of(table.rows, [this](const Row& row) { return isMeasured(row); });
  if (isEmpty) return;
  const char* const unit = table.figure == Figure::speed ? "MB/s" : "µs";
  std::printf("\n%s\n\n| work | baseline %s | product %s | ratio | aim |\n", table.title.c_str(),
              unit, unit);
  std::printf("|---|---:|---:|---:|---:|\n");
  for (const Row& row : table.rows) {
    if (isMeasured(row)) print(row, table.figure);
  }
}

void RatioTable::print(const Row& row, Figure figure) const {
  double Times::* const time = figure == Figure::elapsedTime ? &Times::elapsed : &Times::processor;
  const double subject = fastest_.at(row.subject).*time;
  const double baseline = fastest_.at(row.baseline).*time;
  const auto shown = [&](double nanoseconds) {
    if (figure != Figure::speed) return nanoseconds / nanosecondsPerMicrosecond;
    return static_cast<double>(row.bytes) / bytesPerMegabyte / (nanoseconds / nanosecondsPerSecond);
  };
  std::printf("| %s | %.1f | %.1f | %.2f | ", row.title.c_str(), shown(baseline), shown(subject),
              subject / baseline);
  if (row.aim > 0)
    std::printf("%.1f |\n", row.aim);
  else
    std::printf("none |\n");
}

}  // namespace lanternfold
