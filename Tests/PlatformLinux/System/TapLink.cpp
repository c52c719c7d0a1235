#include "Tests/PlatformLinux/System/TapLink.h"

#include <cstdint>
#include <fcntl.h>
#include <net/if.h>
#include <sys/ioctl.h>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>
#include <linux/if_tun.h>

namespace lanternfold::test {

TapLink::TapLink(const std::string& name) : file_(open("/dev/net/tun", O_RDWR | O_CLOEXEC)) {
  EXPECT_TRUE(file_.isOpen()) << "/dev/net/tun cannot be opened";
  ifreq request{};
  name.copy(request.ifr_name, IFNAMSIZ - 1);
  request.ifr_flags = IFF_TAP | IFF_NO_PI;
  EXPECT_EQ(ioctl(file_.get(), TUNSETIFF, &request), 0) << name;
}

void TapLink::write(std::size_t size) {
  std::vector<std::uint8_t> frame(size, 0);
  frame.at(0) = 0x02;   // a unicast destination of nobody
  frame.at(12) = 0x88;  // an EtherType for experiments
  frame.at(13) = 0xB5;
  EXPECT_EQ(::write(file_.get(), frame.data(), frame.size()), static_cast<ssize_t>(size));
}

}  // namespace lanternfold::test
