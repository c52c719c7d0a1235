// A system call that the kernel refuses to a process from now on, as a full or failing disk would.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <sys/prctl.h>

#include <linux/filter.h>
#include <linux/seccomp.h>

namespace lanternfold {

struct RefusedCall {
  unsigned number;  ///< SYS_write and the like
  unsigned error;
  /// Only calls whose third argument has all of these bits; every call when absent.
  std::optional<unsigned> thirdArgumentBits;

  /// For the calling process, for good: it belongs in a child. Whether the kernel agreed.
  [[nodiscard]] bool install() const {
    const unsigned bits = thirdArgumentBits.value_or(0);
    std::array<sock_filter, 7> statements = {{
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, static_cast<unsigned>(offsetof(seccomp_data, nr))),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, number, 0, 4),
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS,
                 static_cast<unsigned>(offsetof(seccomp_data, args) + 2 * sizeof(__u64))),
        BPF_STMT(BPF_ALU | BPF_AND | BPF_K, bits),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, bits, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | error),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    }};
    const sock_fprog program{.len = statements.size(), .filter = statements.data()};
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
  }
};

}  // namespace lanternfold
