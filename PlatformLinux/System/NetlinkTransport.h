// The parts of netlink sockets that dumps and events share: opening one through libmnl and
// receiving one datagram from the kernel.
//
// Made by: nobody else. Read by: `NetlinkSocket` and `NetlinkEventSocket`.
#pragma once

#include <cstdint>
#include <expected>
#include <memory>
#include <span>
#include <vector>

#include "Platform/NetworkKernel.h"

struct mnl_socket;

namespace lanternfold {

struct NetlinkSocketCloser {
  void operator()(mnl_socket* socket) const;
};

using NetlinkSocketHandle = std::unique_ptr<mnl_socket, NetlinkSocketCloser>;

/// What the errno of a failed call or of an error message means to a reader.
[[nodiscard]] NetworkKernelError kernelErrorFromErrno(int errorNumber);

/// Opens and binds a socket of a netlink protocol. `groups` is the old mask of multicast groups.
[[nodiscard]] std::expected<NetlinkSocketHandle, NetworkKernelError> openNetlinkSocket(
    int protocol, int typeFlags, unsigned groups);

enum class ReceiveOutcome {
  received,    ///< a datagram of the kernel
  foreign,     ///< a datagram that another process sent, to be ignored
  cut,         ///< a datagram longer than the buffer; its end is lost
  nothing,     ///< nothing is there (non-blocking) or nothing came in time
  overflowed,  ///< the kernel dropped messages for want of room (ENOBUFS)
  failed,      ///< see `errorNumber`
};

struct ReceivedDatagram {
  ReceiveOutcome outcome = ReceiveOutcome::failed;
  std::span<const std::uint8_t> bytes;  ///< of a received one; part of the buffer given
  int errorNumber = 0;
};

/// One receive call, repeated only when a signal interrupts it.
[[nodiscard]] ReceivedDatagram receiveDatagram(int descriptor, std::span<std::uint8_t> buffer);

}  // namespace lanternfold
