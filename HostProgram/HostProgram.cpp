#include "HostProgram/HostProgram.h"

#include <expected>
#include <giomm/error.h>
#include <ostream>
#include <variant>

#include "HostProgram/Display/DisplayChoice.h"
#include "HostProgram/Display/ToolkitSetup.h"
#include "HostProgram/HostApplication.h"
#include "HostProgram/HostCommandLine.h"
#include "HostProgram/HostMachine.h"
#include "PlatformLinux/System/StreamDiagnosticLog.h"
#include "Wiring/FailureReport.h"
#include "Wiring/LanguageChoice.h"
#include "Wiring/ServiceOptions.h"

namespace lanternfold {
namespace {

constexpr const char* shownAlready =
    "the widgets are shown already, and stand in front of the other windows for a moment";
constexpr const char* notBelow =
    "this compositor has no layer below the windows, so the widgets are ordinary windows; move "
    "them with the pointer";

std::expected<Glib::RefPtr<Gtk::Application>, CommandFailure> registeredApplication() {
  auto application = Gtk::Application::create(hostApplicationId, Gio::APPLICATION_HANDLES_OPEN);
  try {
    application->register_application();
  } catch (const Glib::Error& error) {
    return std::unexpected(
        workFailed("the session's message bus refuses the widgets: " + std::string(error.what()) +
                   "; sign in anew, or start them with \"dbus-run-session\""));
  }
  return application;
}

std::expected<void, CommandFailure> show(const HostChoice& choice, WindowKind kind,
                                         const Console& console) {
  const UserLanguage language = chooseUserLanguage();
  StreamDiagnosticLog log(stderr, StreamDiagnosticLog::WhenFull::loseLine);
  if (auto ready = setUpToolkit(kind, language, log); !ready) return ready;
  const auto registered = registeredApplication();
  if (!registered) return std::unexpected(registered.error());
  Gtk::Application& application = *registered->operator->();
  if (application.is_remote()) {
    // The first one is activated, and nothing more.
    application.run();
    console.output << shownAlready << '\n';
    return {};
  }
  if (kind == WindowKind::waylandPlain) log.line(notBelow);
  HostMachine machine(choice, language, log);
  HostApplication host(application, kind, machine.services());
  host.run();
  return {};
}

std::expected<void, CommandFailure> run(const HostChoice& choice, const Console& console) {
  const auto kind = chooseDisplay(displayEnvironmentOfProcess(), askWaylandCompositor);
  if (!kind) return std::unexpected(kind.error());
  auto readable = requireCertificateAuthorities(choice.common.services.certificateAuthoritiesFile);
  if (!readable) return readable;
  return withSystemLacks([&] { return show(choice, *kind, console); });
}

}  // namespace

ExitStatus runHostProgram(std::span<const std::string> arguments, const Console& console) {
  const ParsedHostCommandLine parsed = parseHostCommandLine(arguments);
  if (const auto* failure = std::get_if<CommandFailure>(&parsed)) {
    return reportFailure(*failure, hostProgramName, console);
  }
  if (const auto* information = std::get_if<InformationText>(&parsed)) {
    console.output << information->text;
    return finishWriting(hostProgramName, console);
  }
  const auto shown = run(std::get<HostChoice>(parsed), console);
  if (!shown) return reportFailure(shown.error(), hostProgramName, console);
  return finishWriting(hostProgramName, console);
}

}  // namespace lanternfold
