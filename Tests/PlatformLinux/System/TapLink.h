// A link whose other end the test holds: what the test writes, the link receives.
#pragma once

#include <cstddef>
#include <string>

#include "PlatformLinux/System/FileDescriptor.h"

namespace lanternfold::test {

class TapLink {
 public:
  /// Makes the link in the namespace of the calling thread; fails the test when that fails.
  explicit TapLink(const std::string& name);

  /// Sends one frame of `size` bytes, at least 14, into the link, which must be up.
  void write(std::size_t size);

 private:
  FileDescriptor file_;
};

}  // namespace lanternfold::test
