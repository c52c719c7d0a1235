// The rows that an interface shows wherever it stands: in its own list and in that of the Wi-Fi.
//
// Made by and for the list representations of this folder.
#pragma once

#include "NetworkMonitor/Model/BasicInterface.h"

namespace lanternfold {

/// Appends "IP" and "Router" of the first IPv4 entry, or nothing when there is none. "Router" shows
/// the address block, not the gateway: an intended choice.
void appendIPv4Rows(SourceList& rows, const BasicInterface& interface, const StringTable& strings);

/// Appends "MAC" in lower case when the interface has a hardware address.
void appendHardwareAddressRow(SourceList& rows, const BasicInterface& interface,
                              const StringTable& strings);

}  // namespace lanternfold
