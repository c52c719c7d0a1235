// Loaded with LD_PRELOAD into the host of the widgets: makes the kernel answer like that of a
// machine with Wi-Fi, which has one interface, wlan0. Two questions are answered here: which family
// nl80211 is, and which interfaces it has. All else goes to the kernel, and so does everything that
// the programs ask that the host starts.
#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <libmnl/libmnl.h>
#include <linux/genetlink.h>
#include <linux/netlink.h>
#include <linux/nl80211.h>

namespace {

/// Above the last one that the kernel gives to a family.
constexpr std::uint16_t wifiFamily = GENL_MAX_ID + 1;
constexpr std::uint32_t wifiIndex = 4242;

/// What the socket of a thread is to receive next: who has asked waits for the answer.
struct Answer {
  int descriptor = -1;
  std::size_t size = 0;
  alignas(nlmsghdr) std::array<char, 512> bytes{};
};
thread_local Answer answer;

[[gnu::constructor]] void leaveOthersAlone() { unsetenv("LD_PRELOAD"); }

bool isGenericSocket(int descriptor) {
  int domain = 0;
  int protocol = -1;
  socklen_t size = sizeof(int);
  return getsockopt(descriptor, SOL_SOCKET, SO_DOMAIN, &domain, &size) == 0 &&
         getsockopt(descriptor, SOL_SOCKET, SO_PROTOCOL, &protocol, &size) == 0 &&
         domain == AF_NETLINK && protocol == NETLINK_GENERIC;
}

std::uint32_t portOf(int descriptor) {
  sockaddr_nl address{};
  socklen_t size = sizeof(address);
  if (getsockname(descriptor, reinterpret_cast<sockaddr*>(&address), &size) != 0) std::abort();
  return address.nl_pid;
}

bool isCommand(const nlmsghdr& question, std::uint16_t family, std::uint8_t command) {
  return question.nlmsg_type == family &&
         mnl_nlmsg_get_payload_len(&question) >= sizeof(genlmsghdr) &&
         static_cast<const genlmsghdr*>(mnl_nlmsg_get_payload(&question))->cmd == command;
}

/// By its name, which is all that such a question has.
bool asksForFamily(const nlmsghdr& question) {
  if (!isCommand(question, GENL_ID_CTRL, CTRL_CMD_GETFAMILY)) return false;
  const auto* const name =
      static_cast<const nlattr*>(mnl_nlmsg_get_payload_offset(&question, sizeof(genlmsghdr)));
  const std::size_t size = mnl_nlmsg_get_payload_len(&question) - sizeof(genlmsghdr);
  return mnl_attr_ok(name, static_cast<int>(size)) &&
         mnl_attr_get_type(name) == CTRL_ATTR_FAMILY_NAME &&
         std::strcmp(mnl_attr_get_str(name), NL80211_GENL_NAME) == 0;
}

bool asksForInterfaces(const nlmsghdr& question) {
  return isCommand(question, wifiFamily, NL80211_CMD_GET_INTERFACE) &&
         (question.nlmsg_flags & NLM_F_DUMP) == NLM_F_DUMP;
}

/// Another message of the answer, of which `add` makes what is behind the header.
template <typename Add>
void addMessage(const nlmsghdr& question, std::uint16_t type, Add add) {
  nlmsghdr* const message = mnl_nlmsg_put_header(answer.bytes.data() + answer.size);
  message->nlmsg_type = type;
  message->nlmsg_flags = NLM_F_MULTI;
  message->nlmsg_seq = question.nlmsg_seq;
  message->nlmsg_pid = portOf(answer.descriptor);
  add(message);
  answer.size += message->nlmsg_len;  // which libmnl keeps aligned
}

void addCommand(nlmsghdr* message, std::uint8_t command) {
  static_cast<genlmsghdr*>(mnl_nlmsg_put_extra_header(message, sizeof(genlmsghdr)))->cmd = command;
}

void answerFamily(const nlmsghdr& question) {
  addMessage(question, GENL_ID_CTRL, [](nlmsghdr* message) {
    addCommand(message, CTRL_CMD_NEWFAMILY);
    mnl_attr_put_u16(message, CTRL_ATTR_FAMILY_ID, wifiFamily);
    mnl_attr_put_strz(message, CTRL_ATTR_FAMILY_NAME, NL80211_GENL_NAME);
  });
  addMessage(question, NLMSG_ERROR, [](nlmsghdr* message) {  // 0, which acknowledges
    mnl_nlmsg_put_extra_header(message, sizeof(nlmsgerr));
  });
}

void answerInterfaces(const nlmsghdr& question) {
  addMessage(question, wifiFamily, [](nlmsghdr* message) {
    addCommand(message, NL80211_CMD_NEW_INTERFACE);
    mnl_attr_put_u32(message, NL80211_ATTR_IFINDEX, wifiIndex);
    mnl_attr_put_strz(message, NL80211_ATTR_IFNAME, "wlan0");
    mnl_attr_put_u32(message, NL80211_ATTR_IFTYPE, NL80211_IFTYPE_STATION);
  });
  addMessage(question, NLMSG_DONE,
             [](nlmsghdr* message) { mnl_nlmsg_put_extra_header(message, sizeof(int)); });
}

/// Whether the answer to what is sent waits here.
bool answerHere(int descriptor, const void* data, std::size_t size) {
  const auto* const question = static_cast<const nlmsghdr*>(data);
  if (!isGenericSocket(descriptor) || !mnl_nlmsg_ok(question, static_cast<int>(size))) return false;
  const bool isFamily = asksForFamily(*question);
  if (!isFamily && !asksForInterfaces(*question)) return false;
  answer.descriptor = descriptor;
  answer.size = 0;
  if (isFamily) {
    answerFamily(*question);
  } else {
    answerInterfaces(*question);
  }
  return true;
}

/// As the kernel gives it: whole, and from the port 0.
ssize_t take(msghdr& received) {
  constexpr sockaddr_nl kernel{.nl_family = AF_NETLINK, .nl_pad = 0, .nl_pid = 0, .nl_groups = 0};
  if (received.msg_iovlen != 1 || received.msg_iov->iov_len < answer.size ||
      received.msg_namelen < sizeof(kernel)) {
    std::abort();
  }
  std::memcpy(received.msg_iov->iov_base, answer.bytes.data(), answer.size);
  std::memcpy(received.msg_name, &kernel, sizeof(kernel));
  received.msg_namelen = sizeof(kernel);
  received.msg_controllen = 0;
  received.msg_flags = 0;
  answer.descriptor = -1;
  return static_cast<ssize_t>(answer.size);
}

}  // namespace

extern "C" ssize_t sendto(int descriptor, const void* data, size_t size, int flags,
                          const struct sockaddr* address, socklen_t addressSize) {
  if (answerHere(descriptor, data, size)) return static_cast<ssize_t>(size);
  return syscall(SYS_sendto, descriptor, data, size, flags, address, addressSize);
}

extern "C" ssize_t recvmsg(int descriptor, struct msghdr* message, int flags) {
  if (descriptor >= 0 && descriptor == answer.descriptor) return take(*message);
  return syscall(SYS_recvmsg, descriptor, message, flags);
}
