// Listens to the kernel's reports of changed links, addresses and routes, or to those of families
// of generic netlink.
//
// Made by: the path monitor, the counter readers and `GenericEventSocket`. Threads: one at a time.
// Never blocks.
#pragma once

#include <cstdint>
#include <expected>
#include <functional>
#include <vector>

#include "PlatformLinux/Netlink/NetlinkMessage.h"
#include "PlatformLinux/System/NetlinkTransport.h"

namespace lanternfold {

enum class NetlinkEventOutcome {
  drained,      ///< every report that had arrived was delivered
  moreWaiting,  ///< the bound of one call was reached; call again
  overflowed,   ///< reports were lost: whoever keeps a table must read it anew; said once
};

class NetlinkEventSocket {
 public:
  /// The most datagrams that one call of `drain` takes.
  static constexpr int maximumDatagramsPerDrain = 4096;

  /// `groups` is a mask of RTMGRP_*. Errors: refused, failed.
  [[nodiscard]] static std::expected<NetlinkEventSocket, NetworkKernelError> open(unsigned groups);

  /// Of NETLINK_GENERIC, and in no group yet. Its queue is an ordinary one: whoever listens to few
  /// reports, or looks seldom, is told of a loss instead. Errors: refused, failed.
  [[nodiscard]] static std::expected<NetlinkEventSocket, NetworkKernelError> openGeneric();

  /// From now on reports of this group are received as well. False when there is no such group or
  /// it is refused. Joining a group twice is no mistake.
  [[nodiscard]] bool join(std::uint32_t group);

  /// To be watched for readability; owned by this object.
  [[nodiscard]] int descriptor() const;

  /// Delivers what has arrived, in order, to `handler`; a message's payload lives as long as the
  /// call. After `overflowed` what is still waiting can be drained as usual. A report that does not
  /// hold together counts as an overflow. Error: failed, after which the socket is of no more use.
  [[nodiscard]] std::expected<NetlinkEventOutcome, NetworkKernelError> drain(
      const std::function<void(const NetlinkMessage&)>& handler);

 private:
  explicit NetlinkEventSocket(NetlinkSocketHandle socket);

  NetlinkSocketHandle socket_;
  std::vector<std::uint8_t> buffer_;
};

}  // namespace lanternfold
