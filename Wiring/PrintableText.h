// Text from outside, made safe for a terminal.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace lanternfold {

/// `text` escaped as `escapedText` does: the kernel lets an interface's name hold an escape
/// sequence.
[[nodiscard]] std::string printable(std::string_view text);

/// `text` for a message: printable, in quotation marks, and cut after 64 characters.
[[nodiscard]] std::string inQuotes(std::string_view text);

/// The columns that `text` takes on a terminal; wide characters count two, combining ones none.
[[nodiscard]] std::size_t terminalWidth(std::string_view text);

}  // namespace lanternfold
