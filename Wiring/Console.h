// Where a command writes, and how a failure leaves it.
#pragma once

#include <istream>
#include <ostream>
#include <string>
#include <utility>

namespace lanternfold {

enum class TextStyle {
  plain,     ///< output that is piped, or a terminal that wants no colour
  coloured,  ///< a terminal that takes escape sequences
};

struct Console {
  std::ostream& output;  ///< results only
  std::ostream& errors;  ///< one line per failure or hint
  TextStyle style = TextStyle::plain;
  /// What a command reads that is given nothing else; null is the same as empty.
  std::istream* input = nullptr;
  /// Whether whoever read the output has closed it, which is no fault of the program.
  bool (*isReaderGone)() = [] { return false; };
};

/// The program's exit statuses.
enum class ExitStatus {
  done = 0,
  failed = 1,        ///< the work failed; one line on standard error says what and what to do
  badArguments = 2,  ///< the command line was not understood
};

/// Why a command ended early.
struct CommandFailure {
  ExitStatus status = ExitStatus::failed;
  std::string sentence;  ///< one line: what failed and what to do
};

[[nodiscard]] inline CommandFailure badArguments(std::string sentence) {
  return {.status = ExitStatus::badArguments, .sentence = std::move(sentence)};
}

[[nodiscard]] inline CommandFailure workFailed(std::string sentence) {
  return {.status = ExitStatus::failed, .sentence = std::move(sentence)};
}

}  // namespace lanternfold
