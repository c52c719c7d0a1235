// A test's own piece of network: a namespace that lives as long as the test's work in it.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace lanternfold::test {

/// Runs `work` on the calling thread in a new network namespace and comes back from it. As root a
/// namespace that cannot be made fails the test; for others the test stands aside with a line that
/// says so.
void inNewNetworkNamespace(const std::function<void()>& work);

/// Runs commands of iproute2, one a line, in the namespace of the calling thread; fails the test
/// when one of them fails.
void ip(std::string_view commands);

/// Turns IPv6 off in the namespace of the calling thread, so that no link sends anything by itself.
void turnOffIPv6();

/// What iproute2 prints to standard output.
[[nodiscard]] std::string ipOutput(const std::string& arguments);

}  // namespace lanternfold::test
