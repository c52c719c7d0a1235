#include "PlatformLinux/System/NetlinkSocket.h"

#include <cerrno>
#include <cstring>
#include <sys/socket.h>
#include <sys/time.h>
#include <utility>

#include <libmnl/libmnl.h>
#include <linux/netlink.h>

#include "Support/FatalError.h"

namespace lanternfold {

namespace {

// The kernel fills at most 32 KiB of a dump at a time, unless one message needs more.
constexpr std::size_t initialBufferSize = 32 * 1024;
constexpr std::size_t maximumBufferSize = 16 * 1024 * 1024;
constexpr timeval answerTimeout{.tv_sec = 5, .tv_usec = 0};

// Kernels without one of these options (before 4.20 and 4.6) work as well without.
void configure(const NetlinkSocketHandle& socket) {
  int enabled = 1;
  mnl_socket_setsockopt(socket.get(), NETLINK_GET_STRICT_CHK, &enabled, sizeof(enabled));
  timeval timeout = answerTimeout;
  const int descriptor = mnl_socket_get_fd(socket.get());
  setsockopt(descriptor, SOL_SOCKET, SO_RCVTIMEO, &timeout, sizeof(timeout));
  setsockopt(descriptor, SOL_SOCKET, SO_SNDTIMEO, &timeout, sizeof(timeout));
}

}  // namespace

std::expected<NetlinkSocket, NetworkKernelError> NetlinkSocket::open(int protocol) {
  auto socket = openNetlinkSocket(protocol, 0, 0);
  if (!socket) return std::unexpected(socket.error());
  return NetlinkSocket(std::move(*socket), protocol);
}

NetlinkSocket::NetlinkSocket(NetlinkSocketHandle socket, int protocol)
    : socket_(std::move(socket)), protocol_(protocol), buffer_(initialBufferSize) {
  configure(socket_);
  port_ = mnl_socket_get_portid(socket_.get());
}

std::expected<void, NetworkKernelError> NetlinkSocket::dump(const NetlinkRequest& request,
                                                            const NetlinkDumpHandler& handler) {
  if (request.size() < sizeof(nlmsghdr)) fatalError("a netlink request is shorter than its header");
  lastErrorNumber_ = 0;
  for (int attempt = 0; attempt < maximumTries;) {
    const auto step = tryDump(request, handler);
    if (!step || *step == Step::bufferTooSmall) {
      // Messages of the abandoned dump may still arrive: they end with the socket.
      if (!reopen()) return failure(errno);
    }
    if (!step) return std::unexpected(step.error());
    if (*step == Step::done) return {};
    if (*step == Step::doneInterrupted) ++attempt;
    if (*step == Step::bufferTooSmall) {
      if (buffer_.size() >= maximumBufferSize) return failure(EMSGSIZE);
      buffer_.resize(buffer_.size() * 2);
    }
  }
  return std::unexpected(NetworkKernelError::interrupted);
}

std::expected<NetlinkSocket::Step, NetworkKernelError> NetlinkSocket::tryDump(
    const NetlinkRequest& request, const NetlinkDumpHandler& handler) {
  interrupted_ = false;
  handler.begin();
  if (!send(request)) return failure(errno);
  while (true) {
    const auto step = receive(handler);
    if (!step || *step != Step::goOn) return step;
  }
}

bool NetlinkSocket::send(const NetlinkRequest& request) {
  request_ = request;
  nlmsghdr header{};
  std::memcpy(&header, request_.data(), sizeof(header));
  header.nlmsg_seq = ++sequence_;
  std::memcpy(request_.data(), &header, sizeof(header));
  return mnl_socket_sendto(socket_.get(), request_.data(), request_.size()) >= 0;
}

std::expected<NetlinkSocket::Step, NetworkKernelError> NetlinkSocket::receive(
    const NetlinkDumpHandler& handler) {
  const auto datagram = receiveDatagram(mnl_socket_get_fd(socket_.get()), buffer_);
  switch (datagram.outcome) {
    case ReceiveOutcome::received:
      return handleDatagram(datagram.bytes, handler);
    case ReceiveOutcome::foreign:
      return Step::goOn;
    case ReceiveOutcome::cut:
      return Step::bufferTooSmall;
    case ReceiveOutcome::nothing:
    case ReceiveOutcome::overflowed:
    case ReceiveOutcome::failed:
      return failure(datagram.errorNumber);
  }
  return failure(EINVAL);
}

std::expected<NetlinkSocket::Step, NetworkKernelError> NetlinkSocket::handleDatagram(
    std::span<const std::uint8_t> datagram, const NetlinkDumpHandler& handler) {
  NetlinkMessageWalker walker(datagram);
  while (true) {
    const auto message = walker.next();
    if (!message) return std::unexpected(NetworkKernelError::malformed);
    if (!*message) return Step::goOn;
    // What was not asked for by the request at hand is none of its answer.
    if ((*message)->sequence != sequence_ || (*message)->port != port_) continue;
    const auto step = handleMessage(**message, handler);
    if (!step || *step != Step::goOn) return step;
  }
}

std::expected<NetlinkSocket::Step, NetworkKernelError> NetlinkSocket::handleMessage(
    const NetlinkMessage& message, const NetlinkDumpHandler& handler) {
  interrupted_ = interrupted_ || message.dumpWasInterrupted();
  const auto answer = decodeControl(message);
  if (!answer) return std::unexpected(NetworkKernelError::malformed);
  switch (answer->control) {
    case NetlinkControl::none:
      handler.message(message);
      return Step::goOn;
    case NetlinkControl::noOperation:
      return Step::goOn;
    case NetlinkControl::acknowledgment:
    case NetlinkControl::done:
      return interrupted_ ? Step::doneInterrupted : Step::done;
    case NetlinkControl::failure:
      return failure(answer->errorNumber);
    case NetlinkControl::overrun:
      return std::unexpected(NetworkKernelError::failed);
  }
  return failure(EINVAL);
}

std::unexpected<NetworkKernelError> NetlinkSocket::failure(int errorNumber) {
  lastErrorNumber_ = errorNumber;
  return std::unexpected(kernelErrorFromErrno(errorNumber));
}

bool NetlinkSocket::reopen() {
  auto socket = openNetlinkSocket(protocol_, 0, 0);
  if (!socket) return false;
  socket_ = std::move(*socket);
  configure(socket_);
  port_ = mnl_socket_get_portid(socket_.get());
  return true;
}

}  // namespace lanternfold
