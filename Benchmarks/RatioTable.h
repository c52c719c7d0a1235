// Collects the least time of each benchmark and prints what the product costs as a multiple of its
// baseline.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

namespace lanternfold {

/// The least of all repetitions, since what other programs do only ever adds to it.
class RatioTable final : public benchmark::ConsoleReporter {
 public:
  RatioTable() : ConsoleReporter(OO_None) {}

  void ReportRuns(const std::vector<Run>& runs) override;

  /// One line of a table.
  struct Row {
    std::string title;
    std::string subject;    ///< name of the product's benchmark
    std::string baseline;   ///< name of its baseline's
    double aim = 0;         ///< the largest ratio wished for; 0 for none
    std::size_t bytes = 0;  ///< for `Figure::speed`: of what either of them handles once
  };

  /// What stands beside the ratio, which is one of times in any case.
  enum class Figure {
    processorTime,  ///< the kernel's share included; for work in the caller's own thread
    elapsedTime,    ///< for work that waits: for the disk, for another thread
    speed,          ///< megabytes (10^6) in a second of processor time
  };

  struct Table {
    std::string title;
    Figure figure = Figure::processorTime;
    std::vector<Row> rows;
  };

  /// Rows of which one side was filtered away are left out, and a table without rows.
  void print(const Table& table) const;

 private:
  struct Times {
    double processor = 0;  // nanoseconds per iteration
    double elapsed = 0;    // the same
  };

  [[nodiscard]] bool isMeasured(const Row& row) const;
  void print(const Row& row, Figure figure) const;

  std::map<std::string, Times> fastest_;
};

}  // namespace lanternfold
