#include "PlatformLinux/System/NetlinkSocket.h"

#include <cerrno>
#include <cstring>
#include <utility>

#include <linux/netlink.h>

#include "Support/FatalError.h"

namespace lanternfold {

namespace {

// The kernel fills at most 32 KiB of a dump at a time, unless one message needs more.
constexpr std::size_t initialBufferSize = 32 * 1024;
constexpr std::size_t maximumBufferSize = 16 * 1024 * 1024;

}  // namespace

std::expected<NetlinkSocket, NetworkKernelError> NetlinkSocket::open(int protocol) {
  return open([protocol] { return openNetlinkChannel(protocol); });
}

std::expected<NetlinkSocket, NetworkKernelError> NetlinkSocket::open(NetlinkChannelOpener opener) {
  auto channel = opener();
  if (!channel) return std::unexpected(channel.error());
  return NetlinkSocket(std::move(opener), std::move(*channel));
}

NetlinkSocket::NetlinkSocket(NetlinkChannelOpener opener, std::unique_ptr<NetlinkChannel> channel)
    : opener_(std::move(opener)), channel_(std::move(channel)), buffer_(initialBufferSize) {}

std::expected<void, NetworkKernelError> NetlinkSocket::dump(const NetlinkRequest& request,
                                                            const NetlinkDumpHandler& handler) {
  if (request.size() < sizeof(nlmsghdr)) fatalError("a netlink request is shorter than its header");
  lastErrorNumber_ = 0;
  for (int attempt = 0; attempt < maximumTries;) {
    const auto step = tryDump(request, handler);
    if (!step || *step == Step::bufferTooSmall) {
      // Messages of the abandoned dump may still arrive: they end with the socket.
      if (const auto reopened = reopen(); !reopened) return reopened;
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
  if (const int errorNumber = send(request); errorNumber != 0) return failure(errorNumber);
  while (true) {
    const auto step = receive(handler);
    if (!step || *step != Step::goOn) return step;
  }
}

int NetlinkSocket::send(const NetlinkRequest& request) {
  request_ = request;
  nlmsghdr header{};
  std::memcpy(&header, request_.data(), sizeof(header));
  header.nlmsg_seq = ++sequence_;
  std::memcpy(request_.data(), &header, sizeof(header));
  return channel_->send(request_);
}

std::expected<NetlinkSocket::Step, NetworkKernelError> NetlinkSocket::receive(
    const NetlinkDumpHandler& handler) {
  const auto datagram = channel_->receive(buffer_);
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
    if ((*message)->sequence != sequence_ || (*message)->port != channel_->port()) continue;
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

std::expected<void, NetworkKernelError> NetlinkSocket::reopen() {
  auto channel = opener_();
  if (!channel) return std::unexpected(channel.error());
  channel_ = std::move(*channel);
  return {};
}

}  // namespace lanternfold
