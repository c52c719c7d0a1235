#include "CommandLine/InterfaceTable.h"

#include <string>

#include "CommandLine/TextTable.h"
#include "Platform/ByteCounts.h"

namespace lanternfold {
namespace {

constexpr std::string_view unknownGateway = "0.0.0.0";

std::string routerText(const IPv4ConnectionDetails& details) {
  return details.gateway == unknownGateway ? "-" : details.gateway;
}

void addRows(TextTable& table, const BasicInterface& interface, const ByteCountFormatter& bytes) {
  const bool addressed = !interface.IPv4.empty();
  table.addRow({interface.name, interface.displayName, interface.active ? "active" : "inactive",
                addressed ? interface.IPv4.front().address : "-",
                addressed ? routerText(interface.IPv4.front()) : "-",
                interface.hwAddress.value_or("-"), bytes.text(interface.metrics.recvBytes),
                bytes.text(interface.metrics.sentBytes)});
  for (std::size_t index = 1; index < interface.IPv4.size(); ++index) {
    table.addRow(
        {"", "", "", interface.IPv4[index].address, routerText(interface.IPv4[index]), "", "", ""});
  }
}

}  // namespace

void writeInterfaceTable(const std::vector<BasicInterface>& interfaces, const StringTable& strings,
                         const Console& console) {
  TextTable table({{.title = "Name"},
                   {.title = "Adapter"},
                   {.title = "State"},
                   {.title = "IPv4"},
                   {.title = "Router"},
                   {.title = "MAC"},
                   {.title = "Received", .alignment = ColumnAlignment::right},
                   {.title = "Sent", .alignment = ColumnAlignment::right}});
  const ByteCountFormatter bytes = byteCountFormatter(ByteCountStyle::decimal, strings);
  for (const BasicInterface& interface : interfaces) addRows(table, interface, bytes);
  table.write(console.output, console.style);
}

}  // namespace lanternfold
