#include "CommandLine/SampleFailure.h"

#include <array>
#include <system_error>

#include "CommandLine/FileRemedy.h"
#include "CommandLine/MetricsGraph.h"

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
    return error.sentence + remedyAtEndOf(error.sentence);
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

  /// A storage tells the cause of a failed save as the last words of its sentence.
  static std::string remedyAtEndOf(const std::string& sentence) {
    constexpr std::array causes = {std::errc::is_a_directory,
                                   std::errc::invalid_argument,
                                   std::errc::filename_too_long,
                                   std::errc::too_many_symbolic_link_levels,
                                   std::errc::too_many_files_open,
                                   std::errc::too_many_files_open_in_system,
                                   std::errc::no_space_on_device,
                                   std::errc::read_only_file_system,
                                   std::errc::permission_denied,
                                   std::errc::operation_not_permitted,
                                   std::errc::io_error,
                                   std::errc::no_such_file_or_directory,
                                   std::errc::no_such_device_or_address};
    for (const std::errc cause : causes) {
      const std::error_code error = std::make_error_code(cause);
      if (sentence.ends_with(": " + error.message())) return "; " + remedyFor(error);
    }
    return "";
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
