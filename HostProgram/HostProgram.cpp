#include "HostProgram/HostProgram.h"

#include <cstdio>
#include <expected>
#include <memory>
#include <optional>
#include <ostream>
#include <utility>
#include <variant>

#include "HostProgram/Display/DisplayChoice.h"
#include "HostProgram/Display/ToolkitSetup.h"
#include "HostProgram/Display/XServerSurvey.h"
#include "HostProgram/HostApplication.h"
#include "HostProgram/HostCommandLine.h"
#include "HostProgram/HostEnvironment.h"
#include "HostProgram/HostMachine.h"
#include "HostProgram/HostMessages.h"
#include "HostProgram/SessionBus.h"
#include "HostProgram/SoleHost.h"
#include "PlatformLinux/Desktop/WidgetControlObject.h"
#include "PlatformLinux/System/StreamDiagnosticLog.h"
#include "PlatformLinux/System/SystemClock.h"
#include "WidgetHost/Control/HostControl.h"
#include "Wiring/FailureReport.h"
#include "Wiring/LanguageChoice.h"
#include "Wiring/ProgramName.h"
#include "Wiring/ServiceOptions.h"
#include "Wiring/StartNotice.h"

namespace lanternfold {
namespace {

constexpr const char* shownAlready =
    "the widgets are shown already; they stand in front of the other windows for a moment, or "
    "\"Add widget\" opens where there are none";
constexpr const char* busIsSilent =
    "the session's message bus does not answer, so the widgets do without it: "
    "\"lanternfold-widgets ctl\" cannot reach them; sign in anew when they are to be arranged by "
    "it";

/// One that somebody else has chosen.
std::expected<void, CommandFailure> requirePipe(std::optional<int> descriptor) {
  if (!descriptor || StartNotice::canBeToldTo(*descriptor)) return {};
  return std::unexpected(badArguments(std::string(startNoticeOption) +
                                      " takes the writing end of a "
                                      "pipe, which the descriptor " +
                                      std::to_string(*descriptor) + " is not"));
}

std::expected<void, CommandFailure> show(const HostChoice& choice, const DisplayChoice& display,
                                         XServerSurvey& xServer, const Console& console) {
  StartNotice started(choice.startedDescriptor);
  auto givenVariables = givenVariablesOfProcess();
  const UserLanguage language = chooseUserLanguage();
  const auto lines =
      std::make_shared<StreamDiagnosticLog>(stderr, StreamDiagnosticLog::WhenFull::loseLine);
  DiagnosticLog& log = *lines;
  // The toolkit looks for it as well.
  SessionBus bus;
  if (auto ready = setUpToolkit(display.kind, language, lines); !ready) return ready;
  xServer.letGo();
  // Not the toolkit's own kind of application: that one looks for session managers and portals when
  // it takes its name, and waits for each as long as the bus does.
  const auto application =
      Gio::Application::create(hostApplicationId, Gio::APPLICATION_HANDLES_OPEN);
  HostMessages messages(choice.startedDescriptor.has_value(), *lines);
  // Lasts longer than the machine, which saves what is not saved yet when it goes.
  std::optional<SoleHostClaim> claim;
  HostMachine machine(choice, language, log, messages, std::move(givenVariables));
  const HostServices& services = machine.services();
  HostControl control(services.desk, [&application] { application->quit(); });
  // The verbs are there before the name is by which they are called.
  std::optional<WidgetControlObject> verbs;
  if (bus.connection() != nullptr) {
    verbs.emplace(bus.connection(), control, services.mainQueue);
  }
  auto claimed = claimSoleHost(*application.operator->(), bus, services, choice.link);
  if (!claimed) return std::unexpected(claimed.error());
  claim = *std::move(claimed);
  const auto tell = [&started, &messages] { started.tell(messages.descriptor()); };
  if (!claim) {
    console.output << shownAlready << std::endl;
    tell();
    return {};
  }
  messages.begin();
  if (bus.isSilent()) log.line(busIsSilent);
  if (!display.remark.empty()) log.line(display.remark);
  const EndRequests requests;
  HostApplication host(*application.operator->(), display.kind, services, requests, tell);
  host.run(choice.link);
  return {};
}

std::expected<void, CommandFailure> run(const HostChoice& choice, const Console& console) {
  if (auto usable = requirePipe(choice.startedDescriptor); !usable) return usable;
  XServerSurvey xServer;
  const auto display = chooseDisplay(
      displayEnvironmentOfProcess(), [] { return askWaylandCompositor(SystemClock()); },
      [&xServer](const std::string& name) { return xServer.ask(name); });
  if (!display) return std::unexpected(display.error());
  auto readable = requireCertificateAuthorities(choice.common.services.certificateAuthoritiesFile);
  if (!readable) return readable;
  return withSystemLacks([&] { return show(choice, *display, xServer, console); });
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
