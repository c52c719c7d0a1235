#include "Wiring/FileDescriptorLimit.h"

#include <cerrno>
#include <string>
#include <sys/eventfd.h>
#include <system_error>
#include <utility>
#include <vector>

#include "PlatformLinux/System/FileDescriptor.h"

namespace lanternfold {

// By trying: the limit alone does not tell how many the program was started with.
void requireFreeDescriptors(int count) {
  std::vector<FileDescriptor> taken;
  while (std::ssize(taken) < count) {
    FileDescriptor next(::eventfd(0, EFD_CLOEXEC));
    if (!next.isOpen()) {
      throw std::system_error(errno, std::generic_category(),
                              "opening " + std::to_string(count) + " files at once");
    }
    taken.push_back(std::move(next));
  }
}

}  // namespace lanternfold
