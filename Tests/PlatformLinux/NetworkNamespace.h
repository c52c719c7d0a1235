// A network of the test's own: a fresh network namespace with its own sysfs, for the calling thread
// and the threads that it starts.
#pragma once

#include <memory>
#include <string>

namespace lanternfold {

/// Entered by `enter`, left by the destructor, which belongs on the same thread. Mounts are
/// private: whatever is mounted inside is gone afterwards.
class NetworkNamespace {
 public:
  /// Whether this process may make namespaces at all; a test that may not says so and is skipped.
  [[nodiscard]] static bool isAllowed();
  /// Null when the system refuses, which is a failure for a process that is allowed to.
  [[nodiscard]] static std::unique_ptr<NetworkNamespace> enter();

  ~NetworkNamespace();
  NetworkNamespace(const NetworkNamespace&) = delete;
  NetworkNamespace& operator=(const NetworkNamespace&) = delete;

  /// Runs a shell command inside; whether it ended with status 0.
  [[nodiscard]] static bool run(const std::string& command);
  /// What the command wrote to its standard output; empty when it failed.
  [[nodiscard]] static std::string outputOf(const std::string& command);

 private:
  NetworkNamespace(int network, int mounts) : network_(network), mounts_(mounts) {}

  int network_;  ///< descriptor of the namespace to go back to
  int mounts_;
};

}  // namespace lanternfold

/// For a fixture's SetUp: enters a namespace kept in `holder`, or skips for want of privilege.
#define ENTER_NETWORK_NAMESPACE(holder)                                               \
  do {                                                                                \
    if (!lanternfold::NetworkNamespace::isAllowed()) {                                \
      GTEST_SKIP() << "needs root, to make a network namespace";                      \
    }                                                                                 \
    (holder) = lanternfold::NetworkNamespace::enter();                                \
    ASSERT_NE((holder), nullptr) << "the system refuses to make a network namespace"; \
  } while (false)
