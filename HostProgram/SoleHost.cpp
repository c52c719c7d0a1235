#include "HostProgram/SoleHost.h"

#include <chrono>
#include <string>

#include "HostProgram/Links/LinkStart.h"
#include "PlatformLinux/System/ProcessEnd.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;

constexpr const char* lockFile = "host.lock";

/// A host gives its name on the bus back before the lock, and waits for its extension in between.
constexpr auto endingTime = 3s;

CommandFailure shownElsewhere(std::optional<pid_t> holder) {
  const std::string process = holder ? "the process " + std::to_string(*holder) : "a process";
  const std::string remedy =
      holder ? " or with \"kill " + std::to_string(*holder) + "\"" : std::string();
  return workFailed("the widgets of this user are shown already by " + process +
                    ", which is on another message bus or on none; end it with "
                    "\"lanternfold-widgets ctl quit\" in its own session" +
                    remedy + ", and start them here then");
}

std::expected<std::optional<SoleHostClaim>, CommandFailure> claimFolder(
    const ConfigurationDirectory& configuration) {
  const auto folder = configuration.folder();
  if (!folder) return SoleHostClaim{};
  const std::filesystem::path file = *folder / lockFile;
  auto claim = FileClaim::claim(file);
  if (claim && !*claim) {
    const auto holder = FileClaim::signature(file);
    if (!holder || !waitForEnd(*holder, endingTime)) {
      return std::unexpected(shownElsewhere(holder));
    }
    claim = FileClaim::claim(file);
    if (claim && !*claim) return std::unexpected(shownElsewhere(FileClaim::signature(file)));
  }
  if (!claim) return SoleHostClaim{};
  (*claim)->signWithProcess();
  return SoleHostClaim{.lock = *std::move(claim)};
}

}  // namespace

std::expected<std::optional<SoleHostClaim>, CommandFailure> claimSoleHost(
    Gtk::Application& application, const ConfigurationDirectory& configuration,
    const std::optional<std::string>& link) {
  try {
    application.register_application();
  } catch (const Glib::Error& error) {
    return std::unexpected(
        workFailed("the session's message bus refuses the widgets: " + std::string(error.what()) +
                   "; sign in anew, or start them with \"dbus-run-session\""));
  }
  if (!application.is_remote()) return claimFolder(configuration);
  // The first one is activated or opens the link, and nothing more.
  runFromLink(application, link);
  return std::nullopt;
}

}  // namespace lanternfold
