#include "Tests/PlatformLinux/System/NetworkNamespace.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <sched.h>
#include <thread>
#include <unistd.h>

#include <gtest/gtest.h>

namespace lanternfold::test {

void inNewNetworkNamespace(const std::function<void()>& work) {
  if (geteuid() != 0) GTEST_SKIP() << "needs root to make a network namespace";
  std::thread([&work] {
    ASSERT_EQ(unshare(CLONE_NEWNET), 0) << std::strerror(errno);
    work();
  }).join();
}

void ip(std::string_view commands) {
  std::FILE* batch = popen("ip -batch -", "w");
  ASSERT_NE(batch, nullptr);
  std::fwrite(commands.data(), 1, commands.size(), batch);
  ASSERT_EQ(pclose(batch), 0) << commands.substr(0, 500);
}

std::string ipOutput(const std::string& arguments) {
  std::FILE* pipe = popen(("ip " + arguments).c_str(), "r");
  if (pipe == nullptr) return {};
  std::string text;
  std::array<char, 65536> buffer{};
  while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), pipe)) {
    text.append(buffer.data(), count);
  }
  EXPECT_EQ(pclose(pipe), 0) << arguments;
  return text;
}

}  // namespace lanternfold::test
