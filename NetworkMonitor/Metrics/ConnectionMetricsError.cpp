#include "NetworkMonitor/Metrics/ConnectionMetricsError.h"

#include "Support/FatalError.h"

namespace lanternfold {
namespace {

struct Clause {
  std::string operator()(ConnectionMetricsReaderError error) const {
    switch (error) {
      case ConnectionMetricsReaderError::failedGetIf:
        return "the counters of the network interfaces could not be read";
    }
    fatalError("the error of a counter reader is none of the known ones");
  }
  std::string operator()(const LockError& error) const { return describe(error); }
  std::string operator()(const MetricsSaveError& error) const { return error.sentence; }
};

}  // namespace

std::string describe(const ConnectionMetricsError& error) { return std::visit(Clause(), error); }

}  // namespace lanternfold
