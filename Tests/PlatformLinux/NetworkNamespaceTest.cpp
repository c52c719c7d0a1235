// The tests' own network namespace leads back whoever else still runs inside.
#include <latch>
#include <thread>

#include "Tests/PlatformLinux/NetworkNamespace.h"

namespace lanternfold {
namespace {

// A joined thread shares its maker's folders until the kernel has taken it down, which a running
// one does for certain; leaving then was refused as invalid.
TEST(NetworkNamespaceTest, IsLeftWhileAThreadStartedInsideIsStillThere) {
  std::unique_ptr<NetworkNamespace> inside;
  ENTER_NETWORK_NAMESPACE(inside);
  std::latch left(1);
  std::jthread remaining([&left] { left.wait(); });

  inside.reset();
  left.count_down();

  ASSERT_TRUE(NetworkNamespace::run("true"));
}

}  // namespace
}  // namespace lanternfold
