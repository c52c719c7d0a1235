#include "NetworkMonitor/Metrics/SampleFailure.h"

#include <system_error>

#include "NetworkMonitor/Metrics/MetricsFiles.h"
#include "Support/FileRemedy.h"

namespace lanternfold {
namespace {

class Clause {
 public:
  Clause(FileSystem& files, const std::filesystem::path& folder)
      : files_(files), lockFile_(metricsFile(folder, ".lock")), folder_(folder) {}

  std::string operator()(ConnectionMetricsReaderError error) const { return describe(error); }

  std::string operator()(const LockError& error) const {
    switch (error.value) {
      case LockError::Case::lockTimeout:
        return describe(error) + "; if that goes on, remove " + lockFile_.string();
      case LockError::Case::lockFailed:
        return "the lock file " + cannotWrite(lockFile_, causeOf(error));
      case LockError::Case::unlockFailed:
      case LockError::Case::alreadyUnlocked:
        break;
    }
    return describe(error) + " (" + lockFile_.string() + ")";
  }

  std::string operator()(const MetricsSaveError& error) const {
    return error.cause ? error.sentence + "; " + remedyFor(error.cause) : error.sentence;
  }

 private:
  /// A lock file that cannot be made is an error without a cause.
  std::error_code causeOf(const LockError& error) const {
    if (error.underlying) return *error.underlying;
    const auto read = files_.readFile(lockFile_, 0);
    if (!read && read.error() != std::errc::no_such_file_or_directory &&
        read.error() != std::errc::file_too_large) {
      return read.error();
    }
    const std::filesystem::path probe = metricsFile(folder_, ".probe");
    if (const auto made = files_.createEmptyFile(probe); !made) return made.error();
    (void)files_.removeFile(probe);
    return std::make_error_code(std::errc::io_error);
  }

  FileSystem& files_;
  std::filesystem::path lockFile_;
  std::filesystem::path folder_;
};

}  // namespace

std::string sampleFailure(const ConnectionMetricsError& error, FileSystem& files,
                          const std::filesystem::path& folder) {
  return std::visit(Clause(files, folder), error);
}

}  // namespace lanternfold
