// usage: SystemTestRefuse PROGRAM [ARGUMENT...]
// Runs a program to which the kernel refuses netlink sockets with EPERM, as a strict sandbox or a
// service unit would.
#include <array>
#include <cstddef>
#include <cstdio>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <linux/filter.h>
#include <linux/seccomp.h>

namespace {

sock_filter load(std::size_t offset) {
  return BPF_STMT(BPF_LD | BPF_W | BPF_ABS, static_cast<unsigned>(offset));
}

/// Goes on with the next statement when the loaded word is `value`, else `elseSkip` further on.
sock_filter requireEqual(unsigned value, unsigned char elseSkip) {
  return BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, value, 0, elseSkip);
}

bool refuseNetlinkSockets() {
  constexpr unsigned refuse = SECCOMP_RET_ERRNO | 1;  // EPERM
  std::array<sock_filter, 6> statements = {
      load(offsetof(seccomp_data, nr)),
      requireEqual(SYS_socket, 3),
      load(offsetof(seccomp_data, args)),  // the low half on machines of either width
      requireEqual(AF_NETLINK, 1),
      BPF_STMT(BPF_RET | BPF_K, refuse),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
  };
  const sock_fprog program{.len = statements.size(), .filter = statements.data()};
  return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
         prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

}  // namespace

int main(int argumentCount, char** arguments) {
  if (argumentCount < 2 || !refuseNetlinkSockets()) {
    std::perror("cannot refuse netlink sockets");
    return 125;
  }
  execv(arguments[1], arguments + 1);
  std::perror("cannot run the program");
  return 126;
}
