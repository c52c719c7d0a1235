// The JSON form of the counter record and of its type, as text.
//
// An object of the eight field names, in the order of the record, each with an unsigned 64-bit
// integer; the type is its raw value. Decoding is strict about those and ignores any other key.
// Pure: any thread, nothing logged, nothing thrown for bad input.
#pragma once

#include <cstddef>
#include <expected>
#include <string>
#include <string_view>

#include "NetworkMonitor/Metrics/ConnectionMetrics.h"

namespace lanternfold {

/// Why a text or a value is no counter record, and which key is to blame.
struct ConnectionMetricsJsonError {
  enum class Fault {
    tooLong,               ///< more than `longestConnectionMetricsJsonBytes`
    notJson,               ///< no JSON, cut short, or with something behind it; `key` is the last
                           ///< one read before the fault
    tooDeep,               ///< values within values beyond `deepestConnectionMetricsJson`
    notAnObject,           ///< JSON of another kind
    notAnArray,            ///< of a storage's file: JSON of another kind
    missingRecords,        ///< of a storage's file: a type without an object behind it
    missingKey,            ///< one of the eight is not there
    duplicateKey,          ///< one of the eight, or of a file's types or names, stands twice
    notAnUnsignedInteger,  ///< null, a boolean, a text, a list, an object, negative, with a
                           ///< fraction or an exponent, or beyond 2^64 - 1
    unknownCase,           ///< of the type: not the raw value of a case
  };

  Fault fault = Fault::notJson;
  /// The first one to blame, in a record within a document behind the key of the record and a
  /// slash, as in "en0/mtu"; empty when it is the document as a whole.
  std::string key;

  friend bool operator==(const ConnectionMetricsJsonError&,
                         const ConnectionMetricsJsonError&) = default;
};

/// A record is about 200 bytes long; the rest is room for keys of later versions.
inline constexpr std::size_t longestConnectionMetricsJsonBytes = 64 * 1024;
/// Levels below the record itself, which only unknown keys can hold.
inline constexpr int deepestConnectionMetricsJson = 32;

/// A clause for a message, such as "\"mtu\" is missing".
[[nodiscard]] std::string describe(const ConnectionMetricsJsonError& error);

/// On one line, without a space.
[[nodiscard]] std::string encodeConnectionMetrics(const ConnectionMetrics& metrics);
[[nodiscard]] std::expected<ConnectionMetrics, ConnectionMetricsJsonError> decodeConnectionMetrics(
    std::string_view text);

[[nodiscard]] std::string encodeConnectionMetricsType(ConnectionMetricsType type);
[[nodiscard]] std::expected<ConnectionMetricsType, ConnectionMetricsJsonError>
decodeConnectionMetricsType(std::string_view text);

}  // namespace lanternfold
