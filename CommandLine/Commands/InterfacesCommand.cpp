#include "CommandLine/Commands/InterfacesCommand.h"

#include <algorithm>
#include <utility>

#include "CommandLine/InterfaceTable.h"
#include "CommandLine/KernelAccess.h"
#include "CommandLine/RecordJson.h"
#include "Wiring/MonitorGraph.h"

namespace lanternfold {
namespace {

std::vector<BasicInterface> chosenInterfaces(const InterfacesOptions& options,
                                             InterfaceResolver& resolver) {
  std::vector<BasicInterface> interfaces = options.prefix
                                               ? resolver.interfacesPrefixed(*options.prefix)
                                               : resolver.interfacesExcluding(options.excluding);
  std::erase_if(interfaces, [&options](const BasicInterface& interface) {
    return std::ranges::find(options.excluding, interface.name) != options.excluding.end();
  });
  std::ranges::sort(interfaces, {}, &BasicInterface::name);
  return interfaces;
}

}  // namespace

std::vector<std::string> parseExcludedNames(std::string_view names) {
  std::vector<std::string> result;
  for (std::size_t begin = 0; begin < names.size();) {
    const std::size_t end = std::min(names.find(',', begin), names.size());
    result.emplace_back(names.substr(begin, end - begin));
    begin = end + 1;
  }
  return result;
}

std::expected<void, CommandFailure> runInterfaces(const InterfacesOptions& options,
                                                  const Machine& machine, const Console& console) {
  const auto interfaces = chosenInterfaces(options, *makeInterfaceResolver(machine));
  if (interfaces.empty()) {
    if (auto access = requireReadableKernel(machine); !access) return access;
  }
  if (options.json) {
    console.output << interfacesJson(interfaces) << '\n';
  } else if (interfaces.empty()) {
    console.output << "No interface matches.\n";
  } else {
    writeInterfaceTable(interfaces, machine.platform.strings, console);
  }
  return {};
}

}  // namespace lanternfold
