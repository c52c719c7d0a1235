// The JSON form of everything that a storage holds, as its file has it.
//
// An array that alternates the raw value of a type and an object of records by interface name, as
// in [0,{"en0":{…}},1,{"en0":{…}}]. Decoding is strict about that form and about each record, takes
// the pairs in any order and passes over a record's other keys. Pure: any thread, nothing logged,
// nothing thrown for bad input.
#pragma once

#include <cstddef>
#include <expected>
#include <string>
#include <string_view>

#include "NetworkMonitor/Metrics/ConnectionMetricsData.h"
#include "NetworkMonitor/Metrics/ConnectionMetricsJson.h"

namespace lanternfold {

/// A quarter of a million records. A longer file is not written, because it would not be read.
inline constexpr std::size_t longestConnectionMetricsFileBytes = 64 * 1024 * 1024;

struct EncodedConnectionMetricsFile {
  std::string text;  ///< on one line, without a space
  /// Whose interface name is not UTF-8, which JSON cannot hold.
  std::size_t recordsLeftOut = 0;
};

/// Fails with tooLong only.
[[nodiscard]] std::expected<EncodedConnectionMetricsFile, ConnectionMetricsJsonError>
encodeConnectionMetricsFile(const ConnectionMetricsData& data,
                            std::size_t maximumBytes = longestConnectionMetricsFileBytes);

/// The error's key says where: the type, the interface and the field, as in "0/en0/mtu", or the
/// place in the array, as in "[2]". An interface's name is cut short and has only visible ASCII
/// characters there, others as JSON escapes.
[[nodiscard]] std::expected<ConnectionMetricsData, ConnectionMetricsJsonError>
decodeConnectionMetricsFile(std::string_view text);

}  // namespace lanternfold
