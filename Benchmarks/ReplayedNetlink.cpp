#include "Benchmarks/ReplayedNetlink.h"

#include <cerrno>
#include <cstring>
#include <sys/socket.h>
#include <unistd.h>

#include <linux/genetlink.h>
#include <linux/netlink.h>

#include "Support/FatalError.h"

namespace lanternfold {

namespace {

constexpr std::uint32_t replayedPort = 1;

nlmsghdr headerAt(const std::uint8_t* bytes) {
  nlmsghdr header{};
  std::memcpy(&header, bytes, sizeof(header));
  return header;
}

void stamp(std::vector<std::uint8_t>& datagram, std::uint32_t sequence) {
  for (std::size_t start = 0; start + sizeof(nlmsghdr) <= datagram.size();) {
    nlmsghdr header = headerAt(datagram.data() + start);
    header.nlmsg_seq = sequence;
    header.nlmsg_pid = replayedPort;
    std::memcpy(datagram.data() + start, &header, sizeof(header));
    start += NLMSG_ALIGN(header.nlmsg_len);
  }
}

/// The descriptor stays the replayed kernel's own.
class Channel final : public NetlinkChannel {
 public:
  explicit Channel(int descriptor) : descriptor_(descriptor) {}

  [[nodiscard]] std::uint32_t port() const override { return replayedPort; }

  [[nodiscard]] int send(std::span<const std::uint8_t> request) override {
    return ::send(descriptor_, request.data(), request.size(), 0) < 0 ? errno : 0;
  }

  [[nodiscard]] ReceivedDatagram receive(std::span<std::uint8_t> buffer) override {
    const ssize_t size = ::recv(descriptor_, buffer.data(), buffer.size(), MSG_TRUNC);
    if (size <= 0) return {ReceiveOutcome::failed, {}, errno};
    if (static_cast<std::size_t>(size) > buffer.size()) return {ReceiveOutcome::cut, {}, 0};
    return {ReceiveOutcome::received, buffer.first(static_cast<std::size_t>(size)), 0};
  }

 private:
  int descriptor_;
};

}  // namespace

ReplayedNetlink::ReplayedNetlink(bool isGeneric, std::map<Question, Datagrams> answers)
    : isGeneric_(isGeneric), answers_(std::move(answers)) {
  if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, sockets_.data()) != 0) {
    fatalError("the benchmark could not make a pair of sockets");
  }
  thread_ = std::thread([this] { serve(); });
}

ReplayedNetlink::~ReplayedNetlink() {
  ::shutdown(sockets_[0], SHUT_RDWR);
  thread_.join();
  for (const int each : sockets_) ::close(each);
}

NetlinkChannelOpener ReplayedNetlink::opener() const {
  return [descriptor =
              sockets_[0]]() -> std::expected<std::unique_ptr<NetlinkChannel>, NetworkKernelError> {
    return std::make_unique<Channel>(descriptor);
  };
}

void ReplayedNetlink::serve() {
  std::array<std::uint8_t, 4096> request{};
  while (::recv(sockets_[1], request.data(), request.size(), 0) > 0) {
    const nlmsghdr header = headerAt(request.data());
    const std::uint8_t command = isGeneric_ ? request[sizeof(nlmsghdr)] : std::uint8_t{0};
    const auto answer = answers_.find({header.nlmsg_type, command});
    if (answer == answers_.end()) fatalError("the replayed kernel was asked for what it lacks");
    for (std::vector<std::uint8_t>& datagram : answer->second) {
      stamp(datagram, header.nlmsg_seq);
      if (::send(sockets_[1], datagram.data(), datagram.size(), MSG_NOSIGNAL) < 0) return;
    }
  }
}

}  // namespace lanternfold
