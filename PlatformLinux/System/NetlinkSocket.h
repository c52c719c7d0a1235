// Asks the kernel for one table at a time over a netlink socket.
//
// Made by: the kernel tables and the counter readers. Threads: one at a time.
// Every wait is bounded: an answer that does not come within five seconds is a failure.
#pragma once

#include <cstdint>
#include <expected>
#include <functional>
#include <memory>
#include <span>
#include <vector>

#include "PlatformLinux/Netlink/DumpRequest.h"
#include "PlatformLinux/Netlink/NetlinkMessage.h"
#include "PlatformLinux/System/NetlinkChannel.h"

namespace lanternfold {

/// Takes the messages of a dump as they come.
struct NetlinkDumpHandler {
  /// Called before the first message of every try: what came before is void.
  std::function<void()> begin;
  /// One data message; its payload lives as long as the call.
  std::function<void(const NetlinkMessage&)> message;
};

class NetlinkSocket {
 public:
  /// How often a dump is tried when the table changes while it is read.
  static constexpr int maximumTries = 8;

  /// `protocol` is NETLINK_ROUTE or NETLINK_GENERIC. Errors: refused, failed.
  [[nodiscard]] static std::expected<NetlinkSocket, NetworkKernelError> open(int protocol);
  /// The same over channels of another make. `opener` is called again whenever an abandoned dump
  /// may still have messages on the way: they end with their channel.
  [[nodiscard]] static std::expected<NetlinkSocket, NetworkKernelError> open(
      NetlinkChannelOpener opener);

  /// Sends `request` (a whole message; its sequence number is replaced) and hands every message of
  /// the answer to `handler`. Also serves requests with a single answer and an acknowledgment.
  ///
  /// Errors: refused; malformed (the messages do not hold together: nothing of the try counts);
  /// interrupted (the table changed during every try: the last try's messages were all delivered,
  /// and a caller who knows how the table is walked may make use of them); failed (also: no such
  /// table, no answer in time, a message of more than 16 MiB). A later dump is not affected by the
  /// failure of an earlier one.
  [[nodiscard]] std::expected<void, NetworkKernelError> dump(const NetlinkRequest& request,
                                                             const NetlinkDumpHandler& handler);

  /// The errno of the kernel's own answer to the last dump that failed; 0 when there was none.
  [[nodiscard]] int lastErrorNumber() const { return lastErrorNumber_; }

 private:
  enum class Step { goOn, done, doneInterrupted, bufferTooSmall };

  NetlinkSocket(NetlinkChannelOpener opener, std::unique_ptr<NetlinkChannel> channel);

  [[nodiscard]] std::expected<Step, NetworkKernelError> tryDump(const NetlinkRequest& request,
                                                                const NetlinkDumpHandler& handler);
  [[nodiscard]] int send(const NetlinkRequest& request);
  [[nodiscard]] std::expected<Step, NetworkKernelError> receive(const NetlinkDumpHandler& handler);
  [[nodiscard]] std::expected<Step, NetworkKernelError> handleDatagram(
      std::span<const std::uint8_t> datagram, const NetlinkDumpHandler& handler);
  [[nodiscard]] std::expected<Step, NetworkKernelError> handleMessage(
      const NetlinkMessage& message, const NetlinkDumpHandler& handler);
  [[nodiscard]] std::unexpected<NetworkKernelError> failure(int errorNumber);
  [[nodiscard]] std::expected<void, NetworkKernelError> reopen();

  NetlinkChannelOpener opener_;
  std::unique_ptr<NetlinkChannel> channel_;
  std::uint32_t sequence_ = 0;
  bool interrupted_ = false;
  int lastErrorNumber_ = 0;
  NetlinkRequest request_;
  std::vector<std::uint8_t> buffer_;
};

}  // namespace lanternfold
