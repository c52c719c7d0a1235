#include "ExtensionProgram/ExtensionProgram.h"

#include <expected>
#include <sys/resource.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <variant>

#include "ExtensionProgram/ExtensionCommandLine.h"
#include "NetworkWidgetVexExtension/Service/ServiceSession.h"
#include "NetworkWidgetVexExtension/Service/WidgetResponder.h"
#include "PlatformLinux/System/SocketByteStream.h"
#include "Wiring/FailureReport.h"
#include "Wiring/LinuxMachine.h"
#include "Wiring/ProgramName.h"
#include "Wiring/ServiceOptions.h"
#include "Wiring/WidgetGraph.h"

namespace lanternfold {
namespace {

/// A host that has the socket as standard input and output, as many a tool does, must not get
/// diagnostics between the answers.
DiagnosticsTarget diagnosticsBeside(int serviceDescriptor) {
  struct stat service{};
  struct stat output{};
  const bool isSame = ::fstat(serviceDescriptor, &service) == 0 &&
                      ::fstat(STDOUT_FILENO, &output) == 0 && service.st_dev == output.st_dev &&
                      service.st_ino == output.st_ino;
  return isSame ? DiagnosticsTarget::standardError : DiagnosticsTarget::standardOutput;
}

/// Many requests at once need many sockets; the usual limit is there for programs that use
/// `select`, which nothing here does. What the system does not allow stays as it is.
void raiseDescriptorLimit() {
  rlimit limit{};
  if (::getrlimit(RLIMIT_NOFILE, &limit) != 0) return;
  constexpr rlim_t enough = 4096;
  if (limit.rlim_cur >= enough) return;
  limit.rlim_cur = limit.rlim_max < enough ? limit.rlim_max : enough;
  (void)::setrlimit(RLIMIT_NOFILE, &limit);
}

CommandFailure cannotBeServed(int descriptor, const std::error_code& fault) {
  return workFailed("the descriptor " + std::to_string(descriptor) +
                    " cannot be served: " + fault.message() +
                    "; hand in one end of a connected stream socket, as socketpair makes it");
}

/// In the order of construction: the stream goes before the machine whose loop it hangs on.
std::expected<void, CommandFailure> serve(const ExtensionChoice& choice) {
  // A host that reads nothing but the socket must not hold the answers up.
  LinuxMachine linuxMachine({.diagnostics = diagnosticsBeside(choice.serviceDescriptor),
                             .whenDiagnosticsStall = WhenDiagnosticsStall::loseLine,
                             .dataFolder = choice.dataFolder,
                             .certificateAuthoritiesFile = choice.certificateAuthoritiesFile});
  const Machine& machine = linuxMachine.machine();
  DispatchQueue& mainQueue = machine.platform.dispatch.mainQueue();
  const auto stream =
      SocketByteStream::adopt(choice.serviceDescriptor, linuxMachine.eventLoop(), mainQueue);
  if (!stream) return std::unexpected(cannotBeServed(choice.serviceDescriptor, stream.error()));
  RelayedConsent& consent = linuxMachine.consent();
  const WidgetResponder responder =
      makeWidgetResponder(machine, makeWidgets(machine, choice.monitor));
  ServiceSession session(
      {.stream = **stream,
       .responder = responder,
       .mainQueue = mainQueue,
       .clock = machine.platform.clock,
       .locationChanged = [&consent](std::int32_t status) { consent.tell(status); },
       .ended = [&machine] { machine.mainLoop.stop(); }});
  consent.setAsk([&session](bool whenInUse) { session.requestLocation(whenInUse); });
  mainQueue.async([&session] { session.start(); });
  machine.mainLoop.runUntilInterrupted();
  consent.setAsk(nullptr);
  return {};
}

std::expected<void, CommandFailure> run(const ExtensionChoice& choice) {
  // Before anything else is opened, which might get the number of a descriptor that is closed.
  if (const std::error_code fault = SocketByteStream::faultOf(choice.serviceDescriptor)) {
    return std::unexpected(cannotBeServed(choice.serviceDescriptor, fault));
  }
  raiseDescriptorLimit();
  if (auto readable = requireCertificateAuthorities(choice.certificateAuthoritiesFile); !readable) {
    return readable;
  }
  return withSystemLacks([&choice] { return serve(choice); });
}

}  // namespace

ExitStatus runExtensionProgram(std::span<const std::string> arguments, const Console& console) {
  const ParsedExtensionCommandLine parsed = parseExtensionCommandLine(arguments);
  if (const auto* failure = std::get_if<CommandFailure>(&parsed)) {
    return reportFailure(*failure, extensionProgramName, console);
  }
  if (const auto* information = std::get_if<InformationText>(&parsed)) {
    console.output << information->text;
    return finishWriting(extensionProgramName, console);
  }
  const auto served = run(std::get<ExtensionChoice>(parsed));
  if (!served) return reportFailure(served.error(), extensionProgramName, console);
  return ExitStatus::done;
}

}  // namespace lanternfold
