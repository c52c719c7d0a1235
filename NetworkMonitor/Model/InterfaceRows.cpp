#include "NetworkMonitor/Model/InterfaceRows.h"

#include "Support/AsciiCase.h"

namespace lanternfold {

void appendIPv4Rows(SourceList& rows, const BasicInterface& interface, const StringTable& strings) {
  if (interface.IPv4.empty()) return;
  const IPv4ConnectionDetails& first = interface.IPv4.front();
  rows.push_back({.label = strings.localized("IP"), .value = first.address});
  rows.push_back({.label = strings.localized("Router"), .value = first.cidr});
}

void appendHardwareAddressRow(SourceList& rows, const BasicInterface& interface,
                              const StringTable& strings) {
  if (!interface.hwAddress) return;
  rows.push_back({.label = strings.localized("MAC"),
                  .value = asciiLowercased(*interface.hwAddress),
                  .labelRequired = true});
}

}  // namespace lanternfold
