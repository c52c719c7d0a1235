#include "Benchmarks/BareDump.h"

#include <cstring>

#include <libmnl/libmnl.h>
#include <linux/netlink.h>

#include "Support/FatalError.h"

namespace lanternfold {

namespace {

constexpr std::size_t bufferSize = 32 * 1024;

// The end mark, a header and a number, is the last message of the last datagram.
bool endsWithDone(const std::uint8_t* bytes, std::size_t size) {
  constexpr std::size_t doneSize = sizeof(nlmsghdr) + sizeof(std::int32_t);
  if (size < doneSize) return false;
  nlmsghdr header{};
  std::memcpy(&header, bytes + (size - doneSize), sizeof(header));
  return header.nlmsg_type == NLMSG_DONE && header.nlmsg_len == doneSize;
}

}  // namespace

BareDump::BareDump() : socket_(mnl_socket_open(NETLINK_ROUTE)), buffer_(bufferSize) {
  if (socket_ == nullptr || mnl_socket_bind(socket_, 0, MNL_SOCKET_AUTOPID) != 0) {
    fatalError("the benchmark could not open a netlink socket");
  }
  int enabled = 1;
  mnl_socket_setsockopt(socket_, NETLINK_GET_STRICT_CHK, &enabled, sizeof(enabled));
}

BareDump::~BareDump() { mnl_socket_close(socket_); }

std::size_t BareDump::run(const NetlinkRequest& request) {
  if (mnl_socket_sendto(socket_, request.data(), request.size()) < 0) {
    fatalError("the benchmark could not send a request");
  }
  std::size_t total = 0;
  while (true) {
    const ssize_t count = mnl_socket_recvfrom(socket_, buffer_.data(), buffer_.size());
    if (count <= 0) fatalError("the benchmark did not receive its dump");
    total += static_cast<std::size_t>(count);
    if (endsWithDone(buffer_.data(), static_cast<std::size_t>(count))) return total;
  }
}

}  // namespace lanternfold
