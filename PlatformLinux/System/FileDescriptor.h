// Owns one file descriptor.
//
// Read by: whoever opens a file or a socket without a library.
#pragma once

#include <unistd.h>
#include <utility>

namespace lanternfold {

class FileDescriptor {
 public:
  /// Takes over `descriptor`; a negative one stands for a failed call and is not closed.
  explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
  ~FileDescriptor() {
    if (descriptor_ >= 0) close(descriptor_);
  }
  FileDescriptor(FileDescriptor&& other) noexcept
      : descriptor_(std::exchange(other.descriptor_, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
  }

  [[nodiscard]] int get() const { return descriptor_; }
  [[nodiscard]] bool isOpen() const { return descriptor_ >= 0; }

 private:
  int descriptor_;
};

}  // namespace lanternfold
