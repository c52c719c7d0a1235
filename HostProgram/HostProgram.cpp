#include "HostProgram/HostProgram.h"

#include <cstdio>
#include <expected>
#include <ostream>
#include <variant>

#include "HostProgram/Display/DisplayChoice.h"
#include "HostProgram/Display/ToolkitSetup.h"
#include "HostProgram/HostApplication.h"
#include "HostProgram/HostCommandLine.h"
#include "HostProgram/HostEnvironment.h"
#include "HostProgram/HostMachine.h"
#include "HostProgram/SessionBus.h"
#include "HostProgram/SoleHost.h"
#include "PlatformLinux/Desktop/WidgetControlObject.h"
#include "PlatformLinux/System/StreamDiagnosticLog.h"
#include "WidgetHost/Control/HostControl.h"
#include "Wiring/FailureReport.h"
#include "Wiring/LanguageChoice.h"
#include "Wiring/ProgramName.h"
#include "Wiring/ServiceOptions.h"
#include "Wiring/StartNotice.h"

namespace lanternfold {
namespace {

constexpr const char* shownAlready =
    "the widgets are shown already; with a message bus they stand in front of the other windows "
    "for a moment";
constexpr const char* notBelow =
    "this compositor has no layer below the windows, so the widgets are ordinary windows; move "
    "them with the pointer";

std::expected<void, CommandFailure> show(const HostChoice& choice, WindowKind kind,
                                         StartNotice& started, const Console& console) {
  const UserLanguage language = chooseUserLanguage();
  StreamDiagnosticLog log(stderr, StreamDiagnosticLog::WhenFull::loseLine);
  if (auto ready = setUpToolkit(kind, language, log); !ready) return ready;
  const auto application =
      Gtk::Application::create(hostApplicationId, Gio::APPLICATION_HANDLES_OPEN);
  HostMachine machine(choice, language, log);
  const HostServices& services = machine.services();
  HostControl control(services.desk, [&application] { application->quit(); });
  // The verbs are there before the name is by which they are called.
  const SessionBus bus;
  std::optional<WidgetControlObject> verbs;
  if (bus.connection() != nullptr) {
    verbs.emplace(bus.connection(), control, services.mainQueue);
  }
  const auto claim = claimSoleHost(*application.operator->(), services.configuration, choice.link);
  if (!claim) return std::unexpected(claim.error());
  if (!*claim) {
    console.output << shownAlready << std::endl;
    started.tell();
    return {};
  }
  if (kind == WindowKind::waylandPlain) log.line(notBelow);
  const EndRequests requests;
  HostApplication host(*application.operator->(), kind, services, requests,
                       [&started] { started.tell(); });
  host.run(choice.link);
  return {};
}

std::expected<void, CommandFailure> run(const HostChoice& choice, const Console& console) {
  StartNotice started(choice.startedDescriptor);
  const auto kind = chooseDisplay(displayEnvironmentOfProcess(), askWaylandCompositor);
  if (!kind) return std::unexpected(kind.error());
  auto readable = requireCertificateAuthorities(choice.common.services.certificateAuthoritiesFile);
  if (!readable) return readable;
  return withSystemLacks([&] { return show(choice, *kind, started, console); });
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
