// Loaded with LD_PRELOAD into the program under test: makes the kernel answer like one that was
// built before the statistics dump, by sending it a type of message that no kernel knows instead.
// The refusal that comes back is the kernel's own. Every time, a byte is appended to the file that
// LANTERNFOLD_REFUSALS names, so that the test can tell that it was needed.
#include <array>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <linux/netlink.h>
#include <linux/rtnetlink.h>

namespace {

constexpr unsigned short unknownType = 0x0FFE;

bool isRouteSocket(int descriptor) {
  int domain = 0;
  int protocol = -1;
  socklen_t size = sizeof(int);
  return getsockopt(descriptor, SOL_SOCKET, SO_DOMAIN, &domain, &size) == 0 &&
         getsockopt(descriptor, SOL_SOCKET, SO_PROTOCOL, &protocol, &size) == 0 &&
         domain == AF_NETLINK && protocol == NETLINK_ROUTE;
}

void noteRefusal() {
  const char* const path = std::getenv("LANTERNFOLD_REFUSALS");
  const int file =
      path == nullptr ? -1 : open(path, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
  if (file < 0 || write(file, "x", 1) != 1) std::abort();
  close(file);
}

}  // namespace

extern "C" ssize_t sendto(int descriptor, const void* data, size_t size, int flags,
                          const struct sockaddr* address, socklen_t addressSize) {
  std::array<char, 4096> copy{};
  nlmsghdr header{};
  const void* sent = data;
  if (size >= sizeof(header) && size <= copy.size() && isRouteSocket(descriptor)) {
    std::memcpy(&header, data, sizeof(header));
    if (header.nlmsg_type == RTM_GETSTATS) {
      noteRefusal();
      header.nlmsg_type = unknownType;
      std::memcpy(copy.data(), data, size);
      std::memcpy(copy.data(), &header, sizeof(header));
      sent = copy.data();
    }
  }
  return syscall(SYS_sendto, descriptor, sent, size, flags, address, addressSize);
}
