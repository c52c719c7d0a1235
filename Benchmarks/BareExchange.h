// The baseline of a Wi-Fi reading: the same requests, whose answers are received and thrown away.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "PlatformLinux/Netlink/RequestBuilder.h"
#include "PlatformLinux/System/NetlinkChannel.h"

namespace lanternfold {

/// One channel that stays open, with the buffer that the product uses.
class BareExchange {
 public:
  explicit BareExchange(const NetlinkChannelOpener& opener);

  /// Sends the request and receives until the end mark or the acknowledgment. The number of bytes
  /// that came.
  std::size_t run(const NetlinkRequest& request);

 private:
  std::unique_ptr<NetlinkChannel> channel_;
  std::vector<std::uint8_t> buffer_;
};

}  // namespace lanternfold
