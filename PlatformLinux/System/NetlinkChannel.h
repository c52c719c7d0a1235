// One socket's conversation with the kernel: a request out, datagrams in.
//
// Made by: `openNetlinkChannel`, and by tests that play the kernel. Read by: `NetlinkSocket`.
#pragma once

#include <cstdint>
#include <expected>
#include <functional>
#include <memory>
#include <span>

#include "Platform/NetworkKernel.h"
#include "PlatformLinux/System/NetlinkTransport.h"

namespace lanternfold {

/// One thread at a time.
class NetlinkChannel {
 public:
  virtual ~NetlinkChannel() = default;

  /// The address that the kernel's answers bear.
  [[nodiscard]] virtual std::uint32_t port() const = 0;

  /// 0, or the errno.
  [[nodiscard]] virtual int send(std::span<const std::uint8_t> request) = 0;

  /// Waits five seconds at most: `nothing` when nothing came.
  [[nodiscard]] virtual ReceivedDatagram receive(std::span<std::uint8_t> buffer) = 0;
};

using NetlinkChannelOpener =
    std::function<std::expected<std::unique_ptr<NetlinkChannel>, NetworkKernelError>()>;

/// A channel to the kernel, in the network namespace of the calling thread. Errors: refused,
/// failed.
[[nodiscard]] std::expected<std::unique_ptr<NetlinkChannel>, NetworkKernelError> openNetlinkChannel(
    int protocol);

}  // namespace lanternfold
