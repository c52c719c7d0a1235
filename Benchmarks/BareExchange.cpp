#include "Benchmarks/BareExchange.h"

#include <cstring>
#include <utility>

#include <linux/netlink.h>

#include "Support/FatalError.h"

namespace lanternfold {

namespace {

constexpr std::size_t bufferSize = 32 * 1024;

nlmsghdr headerAt(const std::uint8_t* bytes) {
  nlmsghdr header{};
  std::memcpy(&header, bytes, sizeof(header));
  return header;
}

// An acknowledgment is a datagram of its own; the end mark, a header and a number, may stand at the
// end of the last one.
bool isEnd(std::span<const std::uint8_t> datagram) {
  if (headerAt(datagram.data()).nlmsg_type == NLMSG_ERROR) return true;
  constexpr std::size_t doneSize = sizeof(nlmsghdr) + sizeof(std::int32_t);
  if (datagram.size() < doneSize) return false;
  const nlmsghdr last = headerAt(datagram.data() + (datagram.size() - doneSize));
  return last.nlmsg_type == NLMSG_DONE && last.nlmsg_len == doneSize;
}

}  // namespace

BareExchange::BareExchange(const NetlinkChannelOpener& opener) : buffer_(bufferSize) {
  auto channel = opener();
  if (!channel) fatalError("the benchmark could not open a netlink socket");
  channel_ = *std::move(channel);
}

std::size_t BareExchange::run(const NetlinkRequest& request) {
  if (channel_->send(request) != 0) fatalError("the benchmark could not send a request");
  std::size_t total = 0;
  while (true) {
    const ReceivedDatagram datagram = channel_->receive(buffer_);
    if (datagram.outcome != ReceiveOutcome::received || datagram.bytes.size() < sizeof(nlmsghdr)) {
      fatalError("the benchmark did not receive its answer");
    }
    total += datagram.bytes.size();
    if (isEnd(datagram.bytes)) return total;
  }
}

}  // namespace lanternfold
