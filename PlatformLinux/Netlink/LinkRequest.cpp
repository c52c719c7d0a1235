#include "PlatformLinux/Netlink/LinkRequest.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <net/if.h>
#include <span>

#include <linux/if_link.h>
#include <linux/netlink.h>
#include <linux/rtnetlink.h>

#include "Support/FatalError.h"

namespace lanternfold {

namespace {

void appendBytes(NetlinkRequest& request, const void* bytes, std::size_t size) {
  const std::size_t start = request.size();
  request.resize(start + NLMSG_ALIGN(size));
  std::memcpy(request.data() + start, bytes, size);
}

void appendAttribute(NetlinkRequest& request, std::uint16_t type,
                     std::span<const std::uint8_t> value) {
  const rtattr header{.rta_len = static_cast<std::uint16_t>(RTA_LENGTH(value.size())),
                      .rta_type = type};
  appendBytes(request, &header, sizeof(header));
  appendBytes(request, value.data(), value.size());
}

NetlinkRequest linkRequest(std::uint16_t flags, std::string_view name) {
  nlmsghdr header{.nlmsg_len = 0,
                  .nlmsg_type = RTM_GETLINK,
                  .nlmsg_flags = static_cast<std::uint16_t>(NLM_F_REQUEST | flags),
                  .nlmsg_seq = 0,
                  .nlmsg_pid = 0};
  const ifinfomsg body{};
  NetlinkRequest request;
  appendBytes(request, &header, sizeof(header));
  appendBytes(request, &body, sizeof(body));
  std::array<std::uint8_t, sizeof(std::uint32_t)> mask{};
  const std::uint32_t skipStatistics = RTEXT_FILTER_SKIP_STATS;
  std::memcpy(mask.data(), &skipStatistics, sizeof(skipStatistics));
  appendAttribute(request, IFLA_EXT_MASK, mask);
  if (!name.empty()) {
    std::vector<std::uint8_t> terminated(name.begin(), name.end());
    terminated.push_back(0);
    appendAttribute(request, IFLA_IFNAME, terminated);
  }
  header.nlmsg_len = static_cast<std::uint32_t>(request.size());
  std::memcpy(request.data(), &header, sizeof(header));
  return request;
}

}  // namespace

NetlinkRequest linkSurveyRequest() { return linkRequest(NLM_F_DUMP, ""); }

NetlinkRequest linkByNameRequest(std::string_view name) {
  if (name.empty() || name.size() >= IFNAMSIZ) {
    fatalError("a link was asked for by a name that no link can have");
  }
  return linkRequest(NLM_F_ACK, name);
}

}  // namespace lanternfold
