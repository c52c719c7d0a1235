#include "NetworkMonitor/Model/InternetInfo.h"

#include <algorithm>
#include <string_view>

#include "Support/AsciiCase.h"
#include "Support/FatalError.h"
#include "Support/Localizable.h"
#include "Support/TextPlaceholders.h"

namespace lanternfold {
namespace {

void appendAddressRow(SourceList& rows, const InternetInfo& info, const StringTable& strings) {
  if (!info.ip) return;
  if (info.country) {
    rows.push_back({.label = strings.localized("IP - COUNTRY"),
                    .value = *info.ip + " (" + *info.country + ")"});
  } else {
    rows.push_back({.label = strings.localized("IP"), .value = *info.ip});
  }
}

bool containsColon(std::string_view address) { return address.find(':') != std::string_view::npos; }

/// The first IPv4 server, which is told by having no colon, or the first server of all when there
/// are only IPv6 ones.
void appendDnsRow(SourceList& rows, const InternetInfo& info, const StringTable& strings) {
  if (info.dns.empty()) return;
  const auto firstIPv4 = std::ranges::find_if_not(info.dns, containsColon);
  const std::string& shown = firstIPv4 == info.dns.end() ? info.dns.front() : *firstIPv4;
  rows.push_back({.label = strings.localized("DNS"), .value = shown, .labelRequired = true});
}

void appendIPv6Row(SourceList& rows, const InternetInfo& info, const StringTable& strings) {
  if (!info.supportsIPv6) return;
  if (*info.supportsIPv6 && !info.ipv6) {
    fatalError("an internet record supports IPv6 but has no IPv6 address");
  }
  rows.push_back(
      {.label = strings.localized("IPv6"),
       .value = *info.supportsIPv6 ? asciiLowercased(*info.ipv6) : strings.localized("N/A"),
       .labelRequired = true});
}

/// The English name of a type that the "Active connection" row shows; empty for the others.
std::string_view connectionName(InterfaceType type) {
  switch (type) {
    case InterfaceType::wlan:
      return localizable("Wi-Fi");
    case InterfaceType::ethernet:
      return localizable("Ethernet");
    case InterfaceType::cellular:
      return localizable("Cellular");
    case InterfaceType::bluetooth:
    case InterfaceType::unknown:
      break;
  }
  return {};
}

void appendActiveConnectionRow(SourceList& rows, const InternetInfo& info,
                               const StringTable& strings) {
  if (!info.interface) return;
  const std::string_view name = connectionName(info.interface->type);
  if (name.empty()) return;
  rows.push_back({.label = strings.localized("Active connection"),
                  .value = fillPlaceholders(strings.localized("Connected via %@"),
                                            {strings.localized(name)})});
}

}  // namespace

SourceList InternetInfo::listRepresentation(const StringTable&) const { return {}; }

SourceList InternetInfo::compressedListRepresentation(const StringTable& strings) const {
  SourceList rows;
  if (!ip && !ipv6) {
    rows.push_back(
        {.label = strings.localized("Status"), .value = strings.localized("Not connected")});
  }
  if (isp) rows.push_back({.label = strings.localized("ISP"), .value = *isp});
  appendAddressRow(rows, *this, strings);
  appendDnsRow(rows, *this, strings);
  appendIPv6Row(rows, *this, strings);
  appendActiveConnectionRow(rows, *this, strings);
  return rows;
}

}  // namespace lanternfold
