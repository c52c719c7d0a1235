// Listens to the reports of one family of generic netlink, also when the family comes later: a
// module may be loaded, or loaded anew, at any time.
//
// Made by: the path monitor and the Wi-Fi client. Threads: one at a time. Never waits for a report.
#pragma once

#include <expected>
#include <functional>
#include <string>
#include <vector>

#include "PlatformLinux/Netlink/GenericFamilyWatch.h"
#include "PlatformLinux/System/NetlinkEventSocket.h"

namespace lanternfold {

class GenericEventSocket {
 public:
  /// Listens to these groups of the family, in the network namespace of the calling thread; a
  /// family that the kernel does not have is waited for. Needs no privilege for the groups of
  /// nl80211 that are used here. Errors: refused, failed.
  [[nodiscard]] static std::expected<GenericEventSocket, NetworkKernelError> open(
      std::string familyName, std::vector<std::string> groupNames);

  /// To be watched for readability; owned by this object.
  [[nodiscard]] int descriptor() const { return socket_.descriptor(); }

  /// Delivers the family's reports that have arrived, in order, as `NetlinkEventSocket::drain`
  /// does; what other families report is skipped. When the family has come or gone, or may have,
  /// reports were lost as well: overflowed. Error: failed.
  [[nodiscard]] std::expected<NetlinkEventOutcome, NetworkKernelError> drain(
      const std::function<void(const NetlinkMessage&)>& handler);

 private:
  GenericEventSocket(NetlinkEventSocket socket, GenericFamilyWatch watch);

  [[nodiscard]] std::expected<void, NetworkKernelError> findFamily();
  [[nodiscard]] bool join(const std::vector<std::uint32_t>& groups);

  NetlinkEventSocket socket_;
  GenericFamilyWatch watch_;
};

}  // namespace lanternfold
