// The baseline: a dump that is received and thrown away.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "PlatformLinux/Netlink/DumpRequest.h"

struct mnl_socket;

namespace lanternfold {

/// Asks for dumps on one socket that stays open, with the buffer that the product uses, and looks
/// at nothing but the end mark.
class BareDump {
 public:
  BareDump();
  ~BareDump();
  BareDump(const BareDump&) = delete;
  BareDump& operator=(const BareDump&) = delete;

  /// The number of bytes that came.
  std::size_t run(const NetlinkRequest& request);

 private:
  mnl_socket* socket_;
  std::vector<std::uint8_t> buffer_;
};

}  // namespace lanternfold
