// From loosely typed dictionaries to `NetInterface` records: strict, pure, and without an error:
// what does not fit is none or left out.
#pragma once

#include <optional>
#include <string_view>

#include "NetBase/NetInterface.h"
#include "Support/PropertyListValue.h"

namespace lanternfold {

/// The record of an interface dictionary. Anything in it may be missing or of the wrong kind: a
/// flag is then false, a list empty, the metrics none; list elements that fail are dropped.
[[nodiscard]] NetInterface decodeNetInterface(std::string_view name,
                                              const PropertyListDictionary& interface);

/// None when "ip" is missing or a key that is there holds a value of the wrong kind.
[[nodiscard]] std::optional<NetInterface::Address> decodeNetInterfaceAddress(
    const PropertyListValue& element);

/// None when one of the eleven numbers is missing, is not an integer or does not fit its width, or
/// when "hw_address" is there and not a string.
[[nodiscard]] std::optional<NetInterface::Metrics> decodeNetInterfaceMetrics(
    const PropertyListValue& value);

}  // namespace lanternfold
