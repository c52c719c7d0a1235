// What the program knows of itself as a part of a system.
//
// Made by: each program's `main`. Read by: whoever behaves differently in a widget extension.
#pragma once

#include <optional>
#include <string>

namespace lanternfold {

inline constexpr const char* widgetExtensionPoint = "com.apple.widgetkit-extension";

/// The information dictionary of the main bundle, as far as it is asked for.
struct BundleInformation {
  /// "NSExtensionPointIdentifier" of "NSExtension"; none for a program that is no extension.
  std::optional<std::string> extensionPointIdentifier;

  [[nodiscard]] bool isWidgetExtension() const {
    return extensionPointIdentifier == widgetExtensionPoint;
  }
};

[[nodiscard]] inline BundleInformation widgetExtensionBundle() {
  return {.extensionPointIdentifier = widgetExtensionPoint};
}

}  // namespace lanternfold
