// The user's decision on showing where the machine is, and the text it is kept as.
//
// Made by: the `location` commands and a host that asks. Read by: `ConsentRecord`. The text is that
// of Docs/formats/location-consent.md.
#pragma once

#include <cstddef>
#include <cstdint>
#include <expected>
#include <string>
#include <string_view>

namespace lanternfold {

/// The values are those of `LocationConsent::authorizationStatus`; nobody restricts a user who
/// decides himself, so that 1 is missing.
enum class ConsentDecision : std::int32_t {
  notDetermined = 0,
  denied = 2,
  authorizedAlways = 3,
  authorizedWhenInUse = 4,
};

enum class ConsentTextError {
  damaged,       ///< nothing that any version writes
  laterVersion,  ///< of a version that this program does not know
};

/// Longer texts are damaged, whatever they begin with.
inline constexpr std::size_t longestConsentText = 256;

[[nodiscard]] std::string encodeConsent(ConsentDecision decision);

/// Takes what `encodeConsent` writes, to the byte.
[[nodiscard]] std::expected<ConsentDecision, ConsentTextError> decodeConsent(std::string_view text);

}  // namespace lanternfold
