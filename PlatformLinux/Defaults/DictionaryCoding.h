// Dictionaries of settings as the bytes that a database keeps.
//
// Read by: `StoredValue`. The form is written down in Docs/formats/defaults-database.md.
#pragma once

#include <cstddef>
#include <optional>
#include <span>

#include "Support/PropertyListValue.h"

namespace lanternfold {

/// As a CBOR map; `dictionary` is a value that user defaults take.
[[nodiscard]] PropertyListValue::Data encodeDictionary(const PropertyListDictionary& dictionary);

/// None for anything that `encodeDictionary` could not have meant: other kinds, a key that stands
/// twice, more levels than `deepestUserDefaultsValue`, bytes left over or missing.
[[nodiscard]] std::optional<PropertyListDictionary> decodeDictionary(
    std::span<const std::byte> bytes);

}  // namespace lanternfold
