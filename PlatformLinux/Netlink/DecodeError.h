// Why bytes from the kernel were not understood.
//
// Made by: the decoders of this folder. Read by: the readers, which leave the record out, and
// tests.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace lanternfold {

enum class DecodeProblem {
  truncated,     ///< the bytes end inside the thing named
  badLength,     ///< a length field is smaller than its own header
  wrongMessage,  ///< the message is of another type or family than this decoder reads
  missing,       ///< a required attribute or field is not there
  duplicate,     ///< an attribute is there twice
  wrongSize,     ///< an attribute is shorter or longer than it may be
  badValue,      ///< a value is outside its range: an unterminated name, a prefix of 33 bits
};

struct DecodeError {
  DecodeProblem problem = DecodeProblem::truncated;
  /// The header, attribute or field it is about, by the kernel header's name; static text.
  std::string_view subject;
  friend bool operator==(const DecodeError&, const DecodeError&) = default;
};

/// "IFLA_IFNAME: missing", for diagnostics and test messages.
[[nodiscard]] std::string description(const DecodeError& error);

}  // namespace lanternfold
