#include "PlatformLinux/Netlink/RequestBuilder.h"

namespace lanternfold {

RequestBuilder::RequestBuilder(std::uint16_t type, std::uint16_t flags) {
  const nlmsghdr header{.nlmsg_len = 0,
                        .nlmsg_type = type,
                        .nlmsg_flags = static_cast<std::uint16_t>(NLM_F_REQUEST | flags),
                        .nlmsg_seq = 0,
                        .nlmsg_pid = 0};
  append(std::as_bytes(std::span(&header, 1)));
}

void RequestBuilder::addText(std::uint16_t type, std::string_view text) {
  const std::size_t nest = beginNest(type);
  bytes_.insert(bytes_.end(), text.begin(), text.end());
  bytes_.push_back(0);
  endNest(nest);
}

void RequestBuilder::addNumber(std::uint16_t type, std::uint32_t number) {
  const std::size_t nest = beginNest(type);
  append(std::as_bytes(std::span(&number, 1)));
  endNest(nest);
}

std::size_t RequestBuilder::beginNest(std::uint16_t type) {
  const std::size_t start = bytes_.size();
  const nlattr header{.nla_len = 0, .nla_type = type};
  append(std::as_bytes(std::span(&header, 1)));
  return start;
}

void RequestBuilder::endNest(std::size_t nest) {
  // The length is that without the padding.
  const auto length = static_cast<std::uint16_t>(bytes_.size() - nest);
  std::memcpy(bytes_.data() + nest + offsetof(nlattr, nla_len), &length, sizeof(length));
  bytes_.resize(NLMSG_ALIGN(bytes_.size()));
}

NetlinkRequest RequestBuilder::finished() {
  const auto length = static_cast<std::uint32_t>(bytes_.size());
  std::memcpy(bytes_.data(), &length, sizeof(length));
  return std::move(bytes_);
}

void RequestBuilder::append(std::span<const std::byte> bytes) {
  const std::size_t start = bytes_.size();
  bytes_.resize(start + NLMSG_ALIGN(bytes.size()));
  std::memcpy(bytes_.data() + start, bytes.data(), bytes.size());
}

}  // namespace lanternfold
