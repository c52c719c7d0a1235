// Why an exchange of messages ended without a reply, as a user reads it. Pure.
#pragma once

#include <string>
#include <system_error>

#include "Platform/Connection.h"

namespace lanternfold {

/// One line: what failed and what to do. `timeoutSeconds` is the time limit as the user wrote it,
/// empty without one.
[[nodiscard]] std::string exchangeFailure(std::error_code error, const ConnectionTarget& target,
                                          const std::string& timeoutSeconds);

}  // namespace lanternfold
