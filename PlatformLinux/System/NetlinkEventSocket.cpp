#include "PlatformLinux/System/NetlinkEventSocket.h"

#include <sys/socket.h>
#include <utility>

#include <libmnl/libmnl.h>
#include <linux/netlink.h>

namespace lanternfold {

namespace {

// One report is seldom longer than 2 KiB; a longer one than this counts as lost.
constexpr std::size_t eventBufferSize = 64 * 1024;
// Room for some thousand link reports, of which each takes 2 to 4 KiB in the kernel's accounts.
constexpr int receiveQueueSize = 8 * 1024 * 1024;

// Beyond the system's limit only a privileged process may go; everyone else gets up to the limit.
void enlargeReceiveQueue(int descriptor) {
  if (setsockopt(descriptor, SOL_SOCKET, SO_RCVBUFFORCE, &receiveQueueSize,
                 sizeof(receiveQueueSize)) != 0) {
    setsockopt(descriptor, SOL_SOCKET, SO_RCVBUF, &receiveQueueSize, sizeof(receiveQueueSize));
  }
}

// Whether every message of the datagram could be delivered.
bool deliver(std::span<const std::uint8_t> datagram,
             const std::function<void(const NetlinkMessage&)>& handler) {
  NetlinkMessageWalker walker(datagram);
  while (true) {
    const auto message = walker.next();
    if (!message) return false;
    if (!*message) return true;
    const auto control = decodeControl(**message);
    if (!control || control->control == NetlinkControl::overrun) return false;
    if (control->control == NetlinkControl::none) handler(**message);
  }
}

}  // namespace

std::expected<NetlinkEventSocket, NetworkKernelError> NetlinkEventSocket::open(unsigned groups) {
  auto socket = openNetlinkSocket(NETLINK_ROUTE, SOCK_NONBLOCK, groups);
  if (!socket) return std::unexpected(socket.error());
  enlargeReceiveQueue(mnl_socket_get_fd(socket->get()));
  return NetlinkEventSocket(std::move(*socket));
}

std::expected<NetlinkEventSocket, NetworkKernelError> NetlinkEventSocket::openGeneric() {
  auto socket = openNetlinkSocket(NETLINK_GENERIC, SOCK_NONBLOCK, 0);
  if (!socket) return std::unexpected(socket.error());
  return NetlinkEventSocket(std::move(*socket));
}

bool NetlinkEventSocket::join(std::uint32_t group) {
  int number = static_cast<int>(group);
  return mnl_socket_setsockopt(socket_.get(), NETLINK_ADD_MEMBERSHIP, &number, sizeof(number)) == 0;
}

NetlinkEventSocket::NetlinkEventSocket(NetlinkSocketHandle socket)
    : socket_(std::move(socket)), buffer_(eventBufferSize) {}

int NetlinkEventSocket::descriptor() const { return mnl_socket_get_fd(socket_.get()); }

std::expected<NetlinkEventOutcome, NetworkKernelError> NetlinkEventSocket::drain(
    const std::function<void(const NetlinkMessage&)>& handler) {
  for (int count = 0; count < maximumDatagramsPerDrain; ++count) {
    const auto datagram = receiveDatagram(descriptor(), buffer_);
    switch (datagram.outcome) {
      case ReceiveOutcome::received:
        if (!deliver(datagram.bytes, handler)) return NetlinkEventOutcome::overflowed;
        break;
      case ReceiveOutcome::foreign:
        break;
      case ReceiveOutcome::cut:
      case ReceiveOutcome::overflowed:
        return NetlinkEventOutcome::overflowed;
      case ReceiveOutcome::nothing:
        return NetlinkEventOutcome::drained;
      case ReceiveOutcome::failed:
        return std::unexpected(NetworkKernelError::failed);
    }
  }
  return NetlinkEventOutcome::moreWaiting;
}

}  // namespace lanternfold
