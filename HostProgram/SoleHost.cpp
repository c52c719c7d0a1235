#include "HostProgram/SoleHost.h"

#include <chrono>
#include <functional>
#include <string>
#include <unistd.h>

#include "HostProgram/Links/LinkStart.h"

namespace lanternfold {
namespace {

constexpr const char* lockFile = "host.lock";

constexpr std::chrono::milliseconds betweenLooks{100};
/// A host gives its name on the bus back before the lock. In between it has two and a half seconds
/// for its extension and half a second for the bus, and saves; twice of that is for a busy machine.
constexpr std::chrono::seconds patience{6};

CommandFailure shownElsewhere(std::optional<pid_t> holder) {
  const std::string process = holder ? "the process " + std::to_string(*holder) : "a process";
  const std::string remedy =
      holder ? " or with \"kill " + std::to_string(*holder) + "\"" : std::string();
  return workFailed("the widgets of this user are shown already by " + process +
                    ", which is on another message bus or on none; end it with "
                    "\"lanternfold-widgets ctl quit\" in its own session" +
                    remedy + ", and start them here then");
}

/// None when somebody else has the folder, and `isNamed` comes true.
std::expected<std::optional<SoleHostClaim>, CommandFailure> claimFolder(
    const HostServices& services, const std::function<bool()>& isNamed) {
  const auto folder = services.configuration.folder();
  if (!folder) return SoleHostClaim{};
  const std::filesystem::path file = *folder / lockFile;
  const auto deadline = services.clock.steadyNow() + patience;
  while (true) {
    auto claim = FileClaim::claim(file);
    if (!claim) return SoleHostClaim{};
    if (*claim) {
      (*claim)->signWithProcess();
      return SoleHostClaim{.lock = *std::move(claim)};
    }
    if (isNamed()) return std::nullopt;
    if (services.clock.steadyNow() >= deadline) {
      return std::unexpected(shownElsewhere(FileClaim::signature(file)));
    }
    services.clock.sleep(betweenLooks);
  }
}

/// None when nobody else has the folder, whatever stands in the file.
std::optional<pid_t> otherHolder(const std::filesystem::path& file) {
  const auto claim = FileClaim::claim(file);
  if (!claim || *claim) return std::nullopt;
  const auto holder = FileClaim::signature(file);
  return holder == ::getpid() ? std::nullopt : holder;
}

/// Only SIGKILL ends one that hangs: it hears of the others in its main loop.
CommandFailure hangs(const ConfigurationDirectory& configuration) {
  const auto folder = configuration.folder();
  const auto holder = folder ? otherHolder(*folder / lockFile) : std::nullopt;
  const std::string remedy = holder ? " with \"kill -KILL " + std::to_string(*holder) + "\"" : "";
  return workFailed("the program that shows the widgets does not answer; try again, or end it" +
                    remedy + " and start it anew with \"lanternfold-widgets show\"");
}

/// The bus gives the name to one alone, and whoever comes second asks the first what it can do.
std::expected<void, CommandFailure> takeName(Gio::Application& application,
                                             const std::function<bool()>& isNamed,
                                             const ConfigurationDirectory& configuration) {
  try {
    application.register_application();
  } catch (const Glib::Error& error) {
    if (error.matches(G_IO_ERROR, G_IO_ERROR_TIMED_OUT) && isNamed()) {
      return std::unexpected(hangs(configuration));
    }
    return std::unexpected(
        workFailed("the session's message bus refuses the widgets: " + std::string(error.what()) +
                   "; sign in anew, or start them with \"dbus-run-session\""));
  }
  return {};
}

}  // namespace

std::expected<std::optional<SoleHostClaim>, CommandFailure> claimSoleHost(
    Gio::Application& application, SessionBus& bus, const HostServices& services,
    const std::optional<std::string>& link) {
  const auto isNamed = [&] { return bus.hasOwner(application.get_id()); };
  std::optional<SoleHostClaim> claim;
  if (!isNamed()) {
    auto claimed = claimFolder(services, isNamed);
    if (!claimed) return std::unexpected(claimed.error());
    claim = *std::move(claimed);
  }
  // After the folder: whoever finds the name is told that the widgets are shown.
  if (auto taken = takeName(application, isNamed, services.configuration); !taken) {
    return std::unexpected(taken.error());
  }
  if (application.is_remote()) {
    // The first one is activated or opens the link, and nothing more.
    runFromLink(application, link);
    return std::nullopt;
  }
  if (claim) return claim;
  // Whoever had the name has given it back meanwhile.
  return claimFolder(services, [] { return false; });
}

}  // namespace lanternfold
