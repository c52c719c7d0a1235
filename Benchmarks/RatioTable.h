// Collects the least processor time of each benchmark and prints what the product costs as a
// multiple of its baseline.
#pragma once

#include <map>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

namespace lanternfold {

/// Processor time, the kernel's share included, since a dump is made in the caller's own system
/// calls; and the least of all repetitions, since what other programs do only ever adds to it.
class RatioTable final : public benchmark::ConsoleReporter {
 public:
  RatioTable() : ConsoleReporter(OO_None) {}

  void ReportRuns(const std::vector<Run>& runs) override;

  /// One line of the final table.
  struct Row {
    std::string title;
    std::string subject;   ///< name of the product's benchmark
    std::string baseline;  ///< name of its baseline's
    double aim = 0;        ///< the largest ratio wished for; 0 for none
  };

  /// Rows of which one side was filtered away are left out.
  void print(const std::vector<Row>& rows) const;

 private:
  std::map<std::string, double> fastest_;  // nanoseconds per iteration
};

}  // namespace lanternfold
