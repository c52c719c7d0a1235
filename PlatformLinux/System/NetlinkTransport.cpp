#include "PlatformLinux/System/NetlinkTransport.h"

#include <cerrno>
#include <sys/socket.h>
#include <sys/uio.h>

#include <libmnl/libmnl.h>
#include <linux/netlink.h>

namespace lanternfold {

void NetlinkSocketCloser::operator()(mnl_socket* socket) const { mnl_socket_close(socket); }

NetworkKernelError kernelErrorFromErrno(int errorNumber) {
  switch (errorNumber) {
    case EPERM:
    case EACCES:
    case EPROTONOSUPPORT:
    case EAFNOSUPPORT:
    case EOPNOTSUPP:
      return NetworkKernelError::refused;
    default:
      return NetworkKernelError::failed;
  }
}

std::expected<NetlinkSocketHandle, NetworkKernelError> openNetlinkSocket(int protocol,
                                                                         int typeFlags,
                                                                         unsigned groups) {
  NetlinkSocketHandle socket(mnl_socket_open2(protocol, typeFlags | SOCK_CLOEXEC));
  if (!socket || mnl_socket_bind(socket.get(), groups, MNL_SOCKET_AUTOPID) != 0) {
    return std::unexpected(kernelErrorFromErrno(errno));
  }
  return socket;
}

ReceivedDatagram receiveDatagram(int descriptor, std::span<std::uint8_t> buffer) {
  sockaddr_nl sender{};
  iovec area{.iov_base = buffer.data(), .iov_len = buffer.size()};
  msghdr header{};
  ssize_t size = 0;
  do {
    header = {};
    header.msg_name = &sender;
    header.msg_namelen = sizeof(sender);
    header.msg_iov = &area;
    header.msg_iovlen = 1;
    size = recvmsg(descriptor, &header, 0);
  } while (size < 0 && errno == EINTR);
  using enum ReceiveOutcome;
  if (size < 0) {
    if (errno == EAGAIN || errno == EWOULDBLOCK) return {nothing, {}, errno};
    if (errno == ENOBUFS) return {overflowed, {}, errno};
    return {failed, {}, errno};
  }
  // Any process may send to this socket; the kernel alone has the port 0.
  if (header.msg_namelen != sizeof(sender) || sender.nl_pid != 0) return {foreign, {}, 0};
  if ((header.msg_flags & MSG_TRUNC) != 0) return {cut, {}, 0};
  return {received, buffer.first(static_cast<std::size_t>(size)), 0};
}

}  // namespace lanternfold
