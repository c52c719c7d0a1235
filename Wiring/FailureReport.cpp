#include "Wiring/FailureReport.h"

#include <string>
#include <system_error>

#include "Support/FileRemedy.h"
#include "Wiring/PrintableText.h"

namespace lanternfold {
namespace {

/// By its number, since the category of the networking library equals no standard condition.
std::string remedyForLack(const std::error_code& lack) {
  const std::error_code error(lack.value(), std::generic_category());
  const bool lacksFiles =
      error == std::errc::too_many_files_open || error == std::errc::too_many_files_open_in_system;
  return lacksFiles ? remedyFor(error) : "check the limits on threads and memory";
}

}  // namespace

ExitStatus reportFailure(const CommandFailure& failure, const char* program,
                         const Console& console) {
  if (!failure.sentence.empty()) {
    console.errors << program << ": " << printable(failure.sentence) << '\n';
  }
  return failure.status;
}

ExitStatus finishWriting(const char* program, const Console& console) {
  console.output.flush();
  if (console.output || console.isReaderGone()) return ExitStatus::done;
  return reportFailure(workFailed("cannot write to standard output; check that it is open and that "
                                  "the disk is not full"),
                       program, console);
}

std::expected<void, CommandFailure> withSystemLacks(
    const std::function<std::expected<void, CommandFailure>()>& work) {
  try {
    return work();
  } catch (const std::system_error& error) {
    return std::unexpected(workFailed(std::string("the system lacks what is needed: ") +
                                      error.what() + "; " + remedyForLack(error.code())));
  }
}

}  // namespace lanternfold
