// usage: SystemTestRefuseNetlink [--generic-only] PROGRAM [ARGUMENT...]
// Runs a program to which the kernel refuses netlink sockets with EPERM, as a strict sandbox or a
// service unit would: all of them, or those of generic netlink, which tell of Wi-Fi.
#include <array>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <linux/filter.h>
#include <linux/netlink.h>
#include <linux/seccomp.h>

namespace {

sock_filter load(std::size_t offset) {
  return BPF_STMT(BPF_LD | BPF_W | BPF_ABS, static_cast<unsigned>(offset));
}

/// Goes on with the next statement when the loaded word is `value`, else `elseSkip` further on.
sock_filter requireEqual(unsigned value, unsigned char elseSkip) {
  return BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, value, 0, elseSkip);
}

/// Of an argument of the system call; the low half on machines of either width.
sock_filter loadArgument(std::size_t number) {
  return load(offsetof(seccomp_data, args) + number * sizeof(seccomp_data::args[0]));
}

bool refuseNetlinkSockets(bool onlyGeneric) {
  constexpr unsigned refuse = SECCOMP_RET_ERRNO | 1;  // EPERM
  const sock_filter refusal = BPF_STMT(BPF_RET | BPF_K, refuse);
  std::array<sock_filter, 8> statements = {
      load(offsetof(seccomp_data, nr)),
      requireEqual(SYS_socket, 5),
      loadArgument(0),
      requireEqual(AF_NETLINK, 3),
      loadArgument(2),
      onlyGeneric ? requireEqual(NETLINK_GENERIC, 1) : refusal,
      refusal,
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
  };
  const sock_fprog program{.len = statements.size(), .filter = statements.data()};
  return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
         prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

}  // namespace

int main(int argumentCount, char** arguments) {
  const bool onlyGeneric = argumentCount > 1 && std::strcmp(arguments[1], "--generic-only") == 0;
  char** const command = arguments + (onlyGeneric ? 2 : 1);
  if (command >= arguments + argumentCount || !refuseNetlinkSockets(onlyGeneric)) {
    std::perror("cannot refuse netlink sockets");
    return 125;
  }
  execv(command[0], command);
  std::perror("cannot run the program");
  return 126;
}
