// Stopping the program when one of its own rules was broken.
//
// Made by: any room that finds a programmer's error. Read by: whoever finds the core dump.
// What comes from outside (a kernel message, a file, a command line) is never a reason to call
// this.
#pragma once

#include <source_location>
#include <string_view>

namespace lanternfold {

/// Prints "Fatal error: MESSAGE (FILE:LINE)" to standard error and aborts. `message` says what was
/// done and which rule it broke. May be called on any thread; never returns.
[[noreturn]] void fatalError(std::string_view message,
                             std::source_location where = std::source_location::current());

/// The same of an operation that nobody may call, where there is no more to say than whose it is:
/// prints "Fatal error (LOCATION)".
[[noreturn]] void fatalErrorAt(std::string_view location);

}  // namespace lanternfold
