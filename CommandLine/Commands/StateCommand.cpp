#include "CommandLine/Commands/StateCommand.h"

#include <algorithm>
#include <array>
#include <utility>

#include "CommandLine/KernelAccess.h"
#include "CommandLine/MonitorGraph.h"
#include "CommandLine/RecordJson.h"
#include "CommandLine/StateText.h"

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

constexpr NetworkSourceCategory resolvableCategories =
    NetworkSourceCategory::cellular().unionWith(NetworkSourceCategory::other());

std::expected<NetworkSourceCategory, CommandFailure> parseCategory(std::string_view name) {
  for (const NamedCategory& named : namedCategories) {
    if (named.name != name) continue;
    if (resolvableCategories.contains(named.category)) return named.category;
    return std::unexpected(badArguments("the category \"" + std::string(name) +
                                        "\" cannot be resolved by this version; use cellular or "
                                        "other"));
  }
  return std::unexpected(badArguments("unknown category \"" + std::string(name) +
                                      "\"; use cellular or other, separated by commas"));
}

/// A state without adapters is a result only when the kernel lets itself be asked for them.
std::expected<void, CommandFailure> requireTruth(const NetworkState& state,
                                                 NetworkSourceCategory categories,
                                                 const Machine& machine) {
  if (!categories.contains(NetworkSourceCategory::other()) || !state.others.empty()) return {};
  return requireReadableKernel(machine);
}

void write(const NetworkState& state, bool complete, const StateOptions& options,
           const Machine& machine, const Console& console) {
  if (options.json) {
    console.output << stateJson(state, options.categories, complete) << '\n';
  } else {
    writeStateText(state, options.categories, machine.platform.strings, console);
  }
  console.output.flush();
}

/// Fails when the first whole state is empty because the kernel lets nothing be read; what fails
/// later may pass, and the next change is looked at again.
std::expected<void, CommandFailure> watch(const StateOptions& options, const Machine& machine,
                                          const Console& console) {
  std::expected<void, CommandFailure> access;
  bool isFirstWhole = true;
  const auto monitor = makeNetworkStateMonitor(machine);
  monitor->setActiveCategories(options.categories);
  bool first = true;
  monitor->setStateUpdateHandler([&](const NetworkState& state, bool complete, std::error_code) {
    // As text only whole states are worth a reader's while; a script gets every report.
    if (!options.json && !complete) return;
    if (complete && std::exchange(isFirstWhole, false)) {
      access = requireTruth(state, options.categories, machine);
      if (!access) return machine.mainLoop.stop();
    }
    if (!options.json && !std::exchange(first, false)) console.output << '\n';
    write(state, complete, options, machine, console);
    // Whoever read the output is gone: there is nobody left to watch for.
    if (!console.output) machine.mainLoop.stop();
  });
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
  const ResolvedState resolved = resolveOnce(machine, options.categories);
  if (auto access = requireTruth(resolved.state, options.categories, machine); !access) {
    return access;
  }
  write(resolved.state, resolved.complete, options, machine, console);
  return {};
}

}  // namespace lanternfold
