// An adapter as a user chooses it in the widget's configuration.
#pragma once

#include <expected>
#include <optional>
#include <string>

#include "Support/PropertyListValue.h"

namespace lanternfold {

/// The identifier that leaves the choice to the widget.
inline constexpr const char* automaticAdapterIdentifier = "auto";

/// Why a property list is no adapter.
enum class NetworkAdapterCodingError {
  notADictionary,
  missingDisplay,
  wrongType,  ///< a member that is not a text
};

struct NetworkAdapter {
  /// The interface's name; "auto", or absent, leaves the choice to the widget.
  std::optional<std::string> identifier;
  std::string display;  ///< what the list of adapters shows
  std::optional<std::string> pronunciationHint = std::nullopt;

  /// Decoding checks the kind of everything that it takes.
  static constexpr bool supportsSecureCoding = true;

  /// A dictionary of "identifier", "displayString" and "pronunciationHint"; what is absent is left
  /// out.
  [[nodiscard]] PropertyListValue encoded() const;
  /// The reverse. Members of other names are skipped.
  [[nodiscard]] static std::expected<NetworkAdapter, NetworkAdapterCodingError> decode(
      const PropertyListValue& value);

  friend bool operator==(const NetworkAdapter&, const NetworkAdapter&) = default;
};

}  // namespace lanternfold
