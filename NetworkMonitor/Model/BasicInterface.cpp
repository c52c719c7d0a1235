#include "NetworkMonitor/Model/BasicInterface.h"

#include "NetworkMonitor/Model/InterfaceRows.h"

namespace lanternfold {

SourceList BasicInterface::listRepresentation(const StringTable&) const { return {}; }

SourceList BasicInterface::compressedListRepresentation(const StringTable& strings) const {
  SourceList rows{{.label = name, .value = displayName, .labelRequired = true}};
  if (supportsIPv4) appendIPv4Rows(rows, *this, strings);
  appendHardwareAddressRow(rows, *this, strings);
  return rows;
}

}  // namespace lanternfold
