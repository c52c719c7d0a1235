// A network of the test's own: a fresh network namespace with its own sysfs, for the calling thread
// and the threads that it starts.
#pragma once

#include <memory>
#include <string>
#include <unistd.h>

#include <gtest/gtest.h>

namespace lanternfold {

/// The calling thread's root and working folder, which entering a mount namespace resets. They
/// differ from the namespace's own root in a chroot.
class RootFolder {
 public:
  /// Of the mount namespace in which it is made.
  RootFolder();
  ~RootFolder();
  RootFolder(const RootFolder&) = delete;
  RootFolder& operator=(const RootFolder&) = delete;

  [[nodiscard]] bool goBack() const;

 private:
  int root_;
  int working_;
};

/// Entered by `enter`, left by the destructor, which belongs on the same thread. Mounts are
/// private: whatever is mounted inside is gone afterwards.
class NetworkNamespace {
 public:
  /// Null when the system refuses.
  [[nodiscard]] static std::unique_ptr<NetworkNamespace> enter();

  ~NetworkNamespace();
  NetworkNamespace(const NetworkNamespace&) = delete;
  NetworkNamespace& operator=(const NetworkNamespace&) = delete;

  /// Runs a shell command inside; whether it ended with status 0.
  [[nodiscard]] static bool run(const std::string& command);

 private:
  NetworkNamespace(int network, int mounts) : network_(network), mounts_(mounts) {}

  int network_;  ///< descriptor of the namespace to go back to
  int mounts_;
  RootFolder root_;
};

}  // namespace lanternfold

/// For SetUp and for the beginning of a test: what follows runs as root only. As root nothing is
/// ever left out; elsewhere the test stands aside and says what it lacks, as in "to make a
/// namespace".
#define REQUIRE_ROOT(purpose)                                        \
  do {                                                               \
    if (geteuid() != 0) GTEST_SKIP() << "needs root, " << (purpose); \
  } while (false)

/// For a fixture's SetUp: enters a namespace kept in `holder`, or skips for want of privilege.
#define ENTER_NETWORK_NAMESPACE(holder)                                               \
  do {                                                                                \
    REQUIRE_ROOT("to make a network namespace");                                      \
    (holder) = lanternfold::NetworkNamespace::enter();                                \
    ASSERT_NE((holder), nullptr) << "the system refuses to make a network namespace"; \
  } while (false)
