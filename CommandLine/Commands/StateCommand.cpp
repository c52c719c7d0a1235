#include "CommandLine/Commands/StateCommand.h"

#include <algorithm>
#include <array>
#include <optional>
#include <sstream>
#include <string>
#include <utility>

#include "CommandLine/ConsentHint.h"
#include "CommandLine/KernelAccess.h"
#include "CommandLine/RecordJson.h"
#include "CommandLine/ResolvedState.h"
#include "CommandLine/StateText.h"
#include "CommandLine/WifiJson.h"
#include "Wiring/PrintableText.h"
#include "Wiring/ProgramName.h"
#include "Wiring/WifiConsent.h"

namespace lanternfold {
namespace {

struct NamedCategory {
  std::string_view name;
  NetworkSourceCategory category;
};

constexpr std::array<NamedCategory, 4> namedCategories = {{
    {"internet", NetworkSourceCategory::internet()},
    {"wlan", NetworkSourceCategory::wlan()},
    {"cellular", NetworkSourceCategory::cellular()},
    {"other", NetworkSourceCategory::other()},
}};

std::expected<NetworkSourceCategory, CommandFailure> parseCategory(std::string_view name) {
  const auto* const named = std::ranges::find(namedCategories, name, &NamedCategory::name);
  if (named != namedCategories.end()) return named->category;
  return std::unexpected(badArguments("unknown category " + inQuotes(name) + "; use " +
                                      categoryNames + ", separated by commas"));
}

/// A state without adapters or without Wi-Fi is a result only when the kernel lets itself be asked.
/// For Wi-Fi that was not asked for by name, a line that says so will do.
std::expected<void, CommandFailure> requireTruth(const NetworkState& state,
                                                 const StateOptions& options,
                                                 const Machine& machine, const Console& console) {
  if (options.categories.contains(NetworkSourceCategory::other()) && state.others.empty()) {
    if (auto readable = requireReadableKernel(machine); !readable) return readable;
  }
  if (!options.categories.contains(NetworkSourceCategory::wlan()) || state.wlan) return {};
  auto readable = requireReadableWifi(machine);
  if (readable || !options.isWifiOptional) return readable;
  sayWifiIsLeftOut(readable.error(), console);
  return {};
}

/// Tells once how the name of a joined network can be shown.
class WithheldNameHint {
 public:
  WithheldNameHint(const StateOptions& options, const Machine& machine, const Console& console)
      : isDue_(options.categories.contains(NetworkSourceCategory::wlan())),
        machine_(machine),
        console_(console) {}

  void consider(const NetworkState& state) {
    if (!isDue_ || !state.wlan || state.wlan->currentNetwork) return;
    if (!isConsentUndecided(machine_.platform.locationConsent)) return;
    const WifiReading reading = machine_.readWifi();
    if (!reading || !*reading || !(*reading)->namesWithheld) return;
    isDue_ = false;
    tellHowToDecide(console_);
  }

 private:
  bool isDue_;
  const Machine& machine_;
  const Console& console_;
};

/// What the record has no room for; null as well when the kernel refuses, which is said elsewhere.
std::optional<std::string> wifiBeside(const StateOptions& options, const Machine& machine) {
  if (!options.categories.contains(NetworkSourceCategory::wlan())) return std::nullopt;
  return wifiJson(machine.readWifi().value_or(std::nullopt));
}

std::string textOf(const NetworkState& state, bool complete, const StateOptions& options,
                   const Machine& machine, const Console& console) {
  if (options.json) {
    return stateJson(state, options.categories, complete, wifiBeside(options, machine)) + '\n';
  }
  std::ostringstream text;
  writeStateText(state, options.categories, machine.platform.strings,
                 {.output = text, .errors = console.errors, .style = console.style});
  return text.str();
}

/// Writes the reports of a watch. A script gets every report on a line of its own; a reader gets
/// whole states only, each once, with an empty line between them.
class WatchWriter {
 public:
  WatchWriter(const StateOptions& options, const Machine& machine, const Console& console)
      : options_(options), machine_(machine), console_(console) {}

  void write(const NetworkState& state, bool complete) {
    if (!options_.json && !complete) return;
    std::string text = textOf(state, complete, options_, machine_, console_);
    if (!options_.json) {
      if (text == last_) return;
      if (!last_.empty()) console_.output << '\n';
    }
    console_.output << text << std::flush;
    last_ = std::move(text);
  }

 private:
  const StateOptions& options_;
  const Machine& machine_;
  const Console& console_;
  std::string last_;
};

/// Has the state read anew, while it exists, whenever the user decides whether names are shown;
/// null when no names are asked for.
std::unique_ptr<LocationManager> refreshingAfterDecisions(NetworkStateMonitor& monitor,
                                                          const StateOptions& options,
                                                          const Machine& machine) {
  if (!options.categories.contains(NetworkSourceCategory::wlan())) return nullptr;
  return machine.platform.locationConsent.makeLocationManager([&monitor] { monitor.refresh(); });
}

/// Fails when the first whole state is empty because the kernel lets nothing be read; what fails
/// later may pass, and the next change is looked at again.
std::expected<void, CommandFailure> watch(const StateOptions& options, const Machine& machine,
                                          const Console& console) {
  std::expected<void, CommandFailure> access;
  bool isFirstWhole = true;
  WatchWriter writer(options, machine, console);
  WithheldNameHint hint(options, machine, console);
  const auto monitor = makeProgramMonitor(machine, options.monitor);
  monitor->setActiveCategories(options.categories);
  monitor->setStateUpdateHandler([&](const NetworkState& state, bool complete, std::error_code) {
    if (complete && std::exchange(isFirstWhole, false)) {
      access = requireTruth(state, options, machine, console);
      if (!access) return machine.mainLoop.stop();
    }
    writer.write(state, complete);
    if (complete) hint.consider(state);
    // Whoever read the output is gone: there is nobody left to watch for.
    if (!console.output) machine.mainLoop.stop();
  });
  const auto consentWatch = refreshingAfterDecisions(*monitor, options, machine);
  // From within the loop: whoever interrupts the program after its first report ends it properly.
  machine.platform.dispatch.mainQueue().async([watched = std::weak_ptr(monitor)] {
    if (const auto startable = watched.lock()) startable->start();
  });
  machine.mainLoop.runUntilInterrupted();
  monitor->stop();
  return access;
}

}  // namespace

std::expected<NetworkSourceCategory, CommandFailure> parseCategories(std::string_view names) {
  NetworkSourceCategory categories;
  for (std::size_t begin = 0; begin <= names.size();) {
    const std::size_t end = std::min(names.find(',', begin), names.size());
    const auto category = parseCategory(names.substr(begin, end - begin));
    if (!category) return category;
    categories.insert(*category);
    begin = end + 1;
  }
  return categories;
}

std::expected<void, CommandFailure> runState(const StateOptions& options, const Machine& machine,
                                             const Console& console) {
  if (options.watch) return watch(options, machine, console);
  const ResolvedState resolved = resolveOnce(machine, options.monitor, options.categories);
  if (auto access = requireTruth(resolved.state, options, machine, console); !access) {
    return access;
  }
  console.output << textOf(resolved.state, resolved.complete, options, machine, console);
  WithheldNameHint(options, machine, console).consider(resolved.state);
  return {};
}

}  // namespace lanternfold
