#include "PlatformLinux/System/NetlinkSocketPool.h"

#include <utility>

#include <linux/netlink.h>

namespace lanternfold {

NetlinkSocketPool::NetlinkSocketPool()
    : NetlinkSocketPool([] { return openNetlinkChannel(NETLINK_ROUTE); }) {}

std::expected<NetlinkSocket, NetworkKernelError> NetlinkSocketPool::take() {
  {
    const std::lock_guard lock(mutex_);
    if (auto socket = std::exchange(idle_, std::nullopt)) return std::move(*socket);
  }
  return NetlinkSocket::open(opener_);
}

void NetlinkSocketPool::giveBack(NetlinkSocket socket) {
  const std::lock_guard lock(mutex_);
  idle_.emplace(std::move(socket));
}

}  // namespace lanternfold
