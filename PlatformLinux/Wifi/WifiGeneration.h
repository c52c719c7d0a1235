// The generations of Wi-Fi, as a rate belongs to one and as a network announces the latest it
// speaks.
//
// Made by: the decoders of rates and of information elements. Read by: the mappings, the report.
#pragma once

namespace lanternfold {

/// In ascending order.
enum class WifiGeneration {
  legacy,  ///< 802.11a, b and g
  ht,      ///< 802.11n
  vht,     ///< 802.11ac
  he,      ///< 802.11ax
  eht,     ///< 802.11be
};

}  // namespace lanternfold
