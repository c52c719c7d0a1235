#include "Benchmarks/BenchmarkNamespace.h"

#include <cerrno>
#include <cstdio>
#include <sched.h>
#include <string>
#include <sys/wait.h>
#include <system_error>

namespace lanternfold {

namespace {

std::string addressOf(std::size_t link) {
  return "10." + std::to_string(link >> 8U) + "." + std::to_string(link & 0xFFU) + ".1/24";
}

// A batch for iproute2.
std::string commands(std::size_t linkCount) {
  std::string text = "link set lo up\n";
  for (std::size_t link = 1; link + 1 < linkCount; link += 2) {
    const std::string near = "en" + std::to_string(link);
    const std::string far = "en" + std::to_string(link + 1);
    text += "link add " + near + " type veth peer name " + far + "\n";
    text += "addr add " + addressOf(link) + " dev " + near + "\n";
    text += "addr add " + addressOf(link + 1) + " dev " + far + "\n";
  }
  // An odd end, so that there are exactly as many links as asked for.
  if (linkCount % 2 == 0) text += "link add enlast type ifb\n";
  if (linkCount > 2) text += "link set en1 up\nlink set en2 up\nroute add default via 10.0.1.254\n";
  return text;
}

}  // namespace

bool enterBenchmarkNamespace(std::size_t linkCount) {
  if (unshare(CLONE_NEWNET) != 0) {
    std::fprintf(stderr, "a network namespace needs root: %s\n",
                 std::generic_category().message(errno).c_str());
    return false;
  }
  std::FILE* batch = popen("ip -batch -", "w");
  if (batch == nullptr) return false;
  const std::string text = commands(linkCount);
  const bool isWritten = std::fwrite(text.data(), 1, text.size(), batch) == text.size();
  const int status = pclose(batch);
  if (isWritten && WIFEXITED(status) && WEXITSTATUS(status) == 0) return true;
  std::fprintf(stderr, "iproute2 could not make %zu links\n", linkCount);
  return false;
}

}  // namespace lanternfold
