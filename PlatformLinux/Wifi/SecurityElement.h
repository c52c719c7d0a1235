// How a network protects its traffic, as its information elements announce it.
//
// Made by: the decoders below from the bodies of elements. Read by: `InformationElements`, the
// mapping to the seam's values, the report.
#pragma once

#include <cstdint>
#include <expected>
#include <optional>
#include <span>
#include <vector>

#include "PlatformLinux/Netlink/DecodeError.h"

namespace lanternfold {

/// Who defines a suite, in the upper three bytes, and the suite's number: 0x000FAC04 is CCMP.
using SuiteSelector = std::uint32_t;

/// The suites of 802.11 itself, and those of the vendor that made the first ones.
[[nodiscard]] constexpr SuiteSelector rsnSuite(std::uint8_t number) { return 0x000FAC00U | number; }
[[nodiscard]] constexpr SuiteSelector wpaSuite(std::uint8_t number) { return 0x0050F200U | number; }

struct SecurityElement {
  SuiteSelector groupCipher = 0;
  std::vector<SuiteSelector> pairwiseCiphers;  ///< never empty
  std::vector<SuiteSelector> authentications;  ///< how keys come about (AKM); never empty
  /// Whether management frames may and must be protected.
  bool offersManagementProtection = false;
  bool requiresManagementProtection = false;
  /// Absent when it is not announced.
  std::optional<SuiteSelector> managementCipher;
  friend bool operator==(const SecurityElement&, const SecurityElement&) = default;
};

/// The body of the RSN element (WPA2 and WPA3). What an element that ends early leaves out has the
/// standard's default: CCMP and 802.1X. Errors, by the field's name: truncated (it ends inside a
/// field), badValue (another version, a list of no suites).
[[nodiscard]] std::expected<SecurityElement, DecodeError> decodeRsnElement(
    std::span<const std::uint8_t> body);

/// The body of the vendor's element of the first WPA, behind its identifier. The defaults are TKIP
/// and 802.1X; errors as above.
[[nodiscard]] std::expected<SecurityElement, DecodeError> decodeWpaElement(
    std::span<const std::uint8_t> body);

}  // namespace lanternfold
