// How an exchange of messages ends, when no system's error is the reason.
#pragma once

#include <system_error>

namespace lanternfold {

enum class MessageSenderError {
  genericFailure = 1,  ///< the exchange could not begin, or was ended by nobody who is known
  noData,              ///< the reply has no bytes
  timeout,             ///< the time limit has passed
  cancelled,           ///< `cancel` was called
};

[[nodiscard]] const std::error_category& messageSenderCategory();

/// Found by std::error_code.
[[nodiscard]] std::error_code make_error_code(MessageSenderError error);

}  // namespace lanternfold

template <>
struct std::is_error_code_enum<lanternfold::MessageSenderError> : std::true_type {};
