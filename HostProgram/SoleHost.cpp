#include "HostProgram/SoleHost.h"

#include <string>

namespace lanternfold {
namespace {

constexpr const char* lockFile = "host.lock";

/// Where the folder or the lock cannot be made nobody is kept out: widgets that are shown twice are
/// better than none.
std::optional<SoleHostClaim> claimFolder(const ConfigurationDirectory& configuration) {
  const auto folder = configuration.folder();
  if (!folder) return SoleHostClaim{};
  auto claim = FileClaim::claim(*folder / lockFile);
  if (!claim) return SoleHostClaim{};
  if (!*claim) return std::nullopt;
  return SoleHostClaim{.lock = *std::move(claim)};
}

}  // namespace

std::expected<std::optional<SoleHostClaim>, CommandFailure> claimSoleHost(
    Gtk::Application& application, const ConfigurationDirectory& configuration) {
  try {
    application.register_application();
  } catch (const Glib::Error& error) {
    return std::unexpected(
        workFailed("the session's message bus refuses the widgets: " + std::string(error.what()) +
                   "; sign in anew, or start them with \"dbus-run-session\""));
  }
  if (!application.get_dbus_connection()) return claimFolder(configuration);
  if (!application.is_remote()) return SoleHostClaim{};
  // The first one is activated, and nothing more.
  application.run();
  return std::nullopt;
}

}  // namespace lanternfold
