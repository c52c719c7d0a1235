#include "PlatformLinux/System/ThreadTraits.h"

#include <pthread.h>
#include <sys/resource.h>
#include <unistd.h>

namespace lanternfold {

void nameCurrentThread(const std::string& name) {
  constexpr std::size_t keptByKernel = 15;
  pthread_setname_np(pthread_self(), name.substr(0, keptByKernel).c_str());
}

void lowerPriorityOfCurrentThread() {
  // On Linux a nice value belongs to a thread when it is addressed by its own id.
  constexpr int backgroundNiceValue = 10;
  setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), backgroundNiceValue);
}

}  // namespace lanternfold
