#include "HostProgram/HostEnvironment.h"

#include <cstdlib>

namespace lanternfold {
namespace {

/// None for a variable that is not set or empty.
std::optional<std::string> variable(const char* name) {
  const char* value = std::getenv(name);
  if (value == nullptr || *value == '\0') return std::nullopt;
  return value;
}

}  // namespace

DisplayEnvironment displayEnvironmentOfProcess() {
  return {.x11 = variable("DISPLAY"),
          .wayland = variable("WAYLAND_DISPLAY"),
          .backend = variable("GDK_BACKEND")};
}

std::vector<GivenVariable> givenVariablesOfProcess() {
  std::vector<GivenVariable> given;
  // See SessionBus, ToolkitSetup and GettextStringTable.
  for (const char* const name : {"DBUS_SESSION_BUS_ADDRESS", "GDK_GL", "LANGUAGE"}) {
    const char* const value = std::getenv(name);
    given.push_back({.name = name,
                     .value = value == nullptr ? std::nullopt : std::optional<std::string>(value)});
  }
  return given;
}

std::optional<std::string> forcedThemeOfProcess() { return variable("GTK_THEME"); }

std::string loginSessionOfProcess() { return variable("XDG_SESSION_ID").value_or(""); }

}  // namespace lanternfold
