#include "CommandLine/Commands/WifiCommand.h"

#include "CommandLine/ConsentHint.h"
#include "CommandLine/KernelAccess.h"
#include "CommandLine/WifiJson.h"
#include "CommandLine/WifiText.h"
#include "Wiring/WifiConsent.h"

namespace lanternfold {

std::expected<void, CommandFailure> runWifi(const WifiOptions& options, const Machine& machine,
                                            const Console& console) {
  const WifiReading reading = machine.readWifi();
  if (!reading) return std::unexpected(unreadableWifi(reading.error()));
  const std::optional<WifiReport>& report = *reading;
  if (options.json) {
    console.output << wifiJson(report) << '\n';
  } else if (report) {
    writeWifiText(*report, machine.platform.strings, console);
  } else {
    console.output << "No Wi-Fi.\n";
  }
  if (report && report->namesWithheld && isConsentUndecided(machine.platform.locationConsent)) {
    tellHowToDecide(console);
  }
  return {};
}

}  // namespace lanternfold
