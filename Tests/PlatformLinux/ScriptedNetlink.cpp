#include "Tests/PlatformLinux/ScriptedNetlink.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <net/if_arp.h>
#include <utility>

#include <linux/if_link.h>
#include <linux/rtnetlink.h>

namespace lanternfold::test {
namespace {

constexpr std::uint32_t scriptedSequence = 7;
constexpr std::uint32_t scriptedPort = 9;

/// Stamps the messages of a datagram as far as it holds together.
void stamp(Bytes& bytes, std::uint32_t sequence) {
  for (std::size_t start = 0; start + sizeof(nlmsghdr) <= bytes.size();) {
    nlmsghdr header{};
    std::memcpy(&header, bytes.data() + start, sizeof(header));
    if (header.nlmsg_seq == scriptedSequence) header.nlmsg_seq = sequence;
    std::memcpy(bytes.data() + start, &header, sizeof(header));
    if (header.nlmsg_len < sizeof(header)) return;
    start += NLMSG_ALIGN(header.nlmsg_len);
  }
}

}  // namespace

class ScriptedNetlink::Channel final : public NetlinkChannel {
 public:
  explicit Channel(ScriptedNetlink& script) : script_(script) {}

  [[nodiscard]] std::uint32_t port() const override { return scriptedPort; }

  [[nodiscard]] int send(std::span<const std::uint8_t> request) override {
    if (script_.sendError_ != 0) return script_.sendError_;
    nlmsghdr header{};
    std::memcpy(&header, request.data(), sizeof(header));
    for (ScriptedDatagram datagram : script_.answerTo(request)) {
      stamp(datagram.bytes, header.nlmsg_seq);
      pending_.push_back(std::move(datagram));
    }
    return 0;
  }

  [[nodiscard]] ReceivedDatagram receive(std::span<std::uint8_t> buffer) override {
    if (pending_.empty()) return {ReceiveOutcome::nothing, {}, EAGAIN};
    const ScriptedDatagram datagram = std::move(pending_.front());
    pending_.pop_front();
    if (datagram.bytes.size() > buffer.size()) return {ReceiveOutcome::cut, {}, 0};
    std::ranges::copy(datagram.bytes, buffer.begin());
    return {datagram.outcome, buffer.first(datagram.bytes.size()), datagram.errorNumber};
  }

 private:
  ScriptedNetlink& script_;
  std::deque<ScriptedDatagram> pending_;
};

ScriptedAnswer ScriptedNetlink::answerTo(std::span<const std::uint8_t> request) {
  const std::lock_guard lock(mutex_);
  const std::size_t position = requests_.size();
  requests_.emplace_back(request.begin(), request.end());
  if (rule_) return rule_(firstMessage(requests_.back()));
  return answers_.at(std::min(position, answers_.size() - 1));
}

NetlinkChannelOpener ScriptedNetlink::opener() {
  return [this]() -> std::expected<std::unique_ptr<NetlinkChannel>, NetworkKernelError> {
    if (refusesChannels_) return std::unexpected(NetworkKernelError::refused);
    const std::lock_guard lock(mutex_);
    ++openedCount_;
    return std::make_unique<Channel>(*this);
  };
}

Bytes doneMessage(int flags) {
  return message(NLMSG_DONE, bytesOf(std::int32_t{0}), NLM_F_MULTI | flags);
}

Bytes errorMessage(int errorNumber) {
  return message(NLMSG_ERROR, bytesOf(nlmsgerr{.error = -errorNumber, .msg = {}}));
}

Bytes linkMessage(std::uint32_t index, std::string_view name, int flags) {
  ifinfomsg body{};
  body.ifi_type = ARPHRD_ETHER;
  body.ifi_index = static_cast<int>(index);
  return message(RTM_NEWLINK, joined({bytesOf(body), attribute(IFLA_IFNAME, textBytes(name))}),
                 NLM_F_MULTI | flags);
}

}  // namespace lanternfold::test
