// An adapter as a user chooses it in the widget's configuration.
#pragma once

#include <optional>
#include <string>

namespace lanternfold {

/// The identifier that leaves the choice to the widget.
inline constexpr const char* automaticAdapterIdentifier = "auto";

struct NetworkAdapter {
  /// The interface's name; "auto", or absent, leaves the choice to the widget.
  std::optional<std::string> identifier;
  std::string display;  ///< what the list of adapters shows
  std::optional<std::string> pronunciationHint;

  friend bool operator==(const NetworkAdapter&, const NetworkAdapter&) = default;
};

}  // namespace lanternfold
