#include "PlatformLinux/System/NetlinkChannel.h"

#include <cerrno>
#include <sys/socket.h>
#include <sys/time.h>
#include <utility>

#include <libmnl/libmnl.h>
#include <linux/netlink.h>

namespace lanternfold {

namespace {

constexpr timeval answerTimeout{.tv_sec = 5, .tv_usec = 0};

class KernelNetlinkChannel final : public NetlinkChannel {
 public:
  explicit KernelNetlinkChannel(NetlinkSocketHandle socket) : socket_(std::move(socket)) {
    // Kernels without one of these options (before 4.20 and 4.6) work as well without.
    int enabled = 1;
    mnl_socket_setsockopt(socket_.get(), NETLINK_GET_STRICT_CHK, &enabled, sizeof(enabled));
    timeval timeout = answerTimeout;
    setsockopt(descriptor(), SOL_SOCKET, SO_RCVTIMEO, &timeout, sizeof(timeout));
    setsockopt(descriptor(), SOL_SOCKET, SO_SNDTIMEO, &timeout, sizeof(timeout));
  }

  [[nodiscard]] std::uint32_t port() const override { return mnl_socket_get_portid(socket_.get()); }

  [[nodiscard]] int send(std::span<const std::uint8_t> request) override {
    return mnl_socket_sendto(socket_.get(), request.data(), request.size()) < 0 ? errno : 0;
  }

  [[nodiscard]] ReceivedDatagram receive(std::span<std::uint8_t> buffer) override {
    return receiveDatagram(descriptor(), buffer);
  }

 private:
  [[nodiscard]] int descriptor() const { return mnl_socket_get_fd(socket_.get()); }

  NetlinkSocketHandle socket_;
};

}  // namespace

std::expected<std::unique_ptr<NetlinkChannel>, NetworkKernelError> openNetlinkChannel(
    int protocol) {
  auto socket = openNetlinkSocket(protocol, 0, 0);
  if (!socket) return std::unexpected(socket.error());
  return std::make_unique<KernelNetlinkChannel>(std::move(*socket));
}

}  // namespace lanternfold
