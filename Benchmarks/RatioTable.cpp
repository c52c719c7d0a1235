#include "Benchmarks/RatioTable.h"

#include <algorithm>
#include <cstdio>

namespace lanternfold {

namespace {

constexpr double nanosecondsPerMicrosecond = 1000;
constexpr double nanosecondsPerSecond = 1e9;

}  // namespace

void RatioTable::ReportRuns(const std::vector<Run>& runs) {
  ConsoleReporter::ReportRuns(runs);
  for (const Run& run : runs) {
    if (run.run_type != Run::RT_Iteration || run.iterations == 0) continue;
    const double time =
        run.cpu_accumulated_time * nanosecondsPerSecond / static_cast<double>(run.iterations);
    const auto [position, isNew] = fastest_.try_emplace(run.run_name.function_name, time);
    if (!isNew) position->second = std::min(position->second, time);
  }
}

void RatioTable::print(const std::vector<Row>& rows) const {
  std::printf("\n| work | baseline µs | product µs | ratio | aim |\n|---|---:|---:|---:|---:|\n");
  for (const Row& row : rows) {
    const auto subject = fastest_.find(row.subject);
    const auto baseline = fastest_.find(row.baseline);
    if (subject == fastest_.end() || baseline == fastest_.end()) continue;
    std::printf("| %s | %.1f | %.1f | %.2f | ", row.title.c_str(),
                baseline->second / nanosecondsPerMicrosecond,
                subject->second / nanosecondsPerMicrosecond, subject->second / baseline->second);
    if (row.aim > 0)
      std::printf("%.1f |\n", row.aim);
    else
      std::printf("none |\n");
  }
}

}  // namespace lanternfold
