#include "CommandLine/KernelAccess.h"

#include <string>

#include "Wiring/ProgramName.h"

namespace lanternfold {
namespace {

std::string reasonAndRemedy(NetworkKernelError error) {
  switch (error) {
    case NetworkKernelError::refused:
      return "the kernel refused the request; allow this program to open netlink sockets (a "
             "sandbox or a service unit may forbid them)";
    case NetworkKernelError::malformed:
      return "the kernel's answer could not be understood; please report this with the output of "
             "\"uname -r\"";
    case NetworkKernelError::interrupted:
      return "the list kept changing while it was read; try again in a moment";
    case NetworkKernelError::failed:
      break;
  }
  return "the kernel did not answer; try again, and check the limits on open files and memory";
}

}  // namespace

std::expected<void, CommandFailure> requireReadableKernel(const Machine& machine) {
  const auto reading = machine.platform.kernel.beginReading();
  if (const auto& entries = reading->addressEntries(); !entries) {
    return std::unexpected(
        workFailed("cannot read this machine's interfaces: " + reasonAndRemedy(entries.error())));
  }
  if (!machine.metricsReader->read()) {
    return std::unexpected(workFailed(
        "cannot read this machine's traffic counters: the kernel refused every way to ask for "
        "them; allow this program to open netlink sockets or to read /proc/net/dev"));
  }
  return {};
}

CommandFailure unreadableWifi(NetworkKernelError error) {
  return workFailed("cannot read this machine's Wi-Fi: " + reasonAndRemedy(error));
}

void sayWifiIsLeftOut(const CommandFailure& failure, const Console& console) {
  console.errors << programName << ": Wi-Fi is left out: " << failure.sentence << '\n';
}

std::expected<void, CommandFailure> requireReadableWifi(const Machine& machine) {
  const WifiReading reading = machine.readWifi();
  if (!reading) return std::unexpected(unreadableWifi(reading.error()));
  // The kernel has a Wi-Fi interface, and its other tables, if they can be read, do not know it: it
  // went in between.
  return *reading ? requireReadableKernel(machine) : std::expected<void, CommandFailure>();
}

}  // namespace lanternfold
